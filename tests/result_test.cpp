#include <korx/KORIResult.h>

#include <gtest/gtest.h>

#include <tuple>

TEST(ResultCode, SplitsIntoNumberDomainAndCriticityAndKeepsAll32Bits) {
    const std::tuple<long, int, int, int> cases[] = {
        {0x3A5BEEF, 0xBEEF, 0xA5, 3}, {0xF1020304, 0x304, 2, 1},  // bits 28-31 belong to no field
    };
    for (const auto& [code, number, domain, criticity] : cases) {
        const KORIResult r(code);
        EXPECT_EQ(std::make_tuple(r.GetNumber(), r.GetDomain(), r.GetCriticity(), long(r)),
                  std::make_tuple(number, domain, criticity, code));
    }
    EXPECT_TRUE(KORIResult() == 0x3000006);
    EXPECT_TRUE(KORIResult::E_FAIL_RESULT == 0x1000001u);
    EXPECT_TRUE(KORIResult(0x1000002) != KORIResult::E_FAIL_RESULT);
}

TEST(ResultMessage, NamesTheKnownCodesAndNoOther) {
    // Every text is checked: hosts show them to users as they are.
    const std::pair<long, const char*> known[] = {
        {0x0000000, "Success"},
        {0x0000001, "Partial Success"},
        {0x0000002, "No Entity to Translate"},
        {0x1000001, "Failure"},
        {0x1000002, "Error Encountered"},
        {0x1000007, "Unexpected Error"},
        {0x1000009, "Invalid Component"},
        {0x100000A, "Invalid Object"},
        {0x100000B, "Invalid Argument"},
        {0x100000D, "File Not Found"},
        {0x100000E, "File Open Error"},
        {0x100000F, "File Save Error"},
        {0x1000010, "File is encrypted"},
        {0x1000011, "Model size exceeds valid box"},
        {0x1000012, "Model size is smaller than the valid box"},
        {0x1000013, "File write unit is invalid"},
        {0x1000014, "File version is not supported"},
        {0x1000015, "Invalid file"},
        {0x2000003, "Aborted"},
        {0x3000006, "Undetermined"},
    };
    for (const auto& [code, message] : known)
        EXPECT_STREQ(KORIResult(code).GetMessage(), message) << std::hex << code;
    // "Option not defined" (0x1000008) has no message of its own.
    for (long code : {0x1000008L, 0x0000003L, 0x1010001L, 0x11000001L})
        EXPECT_STREQ(KORIResult(code).GetMessage(), "Unknown Result") << std::hex << code;
}

TEST(ResultPredicates, ClassifyByCriticityAndTheSpecialCodes) {
    // success, complete, partial, failure, determined failure, undetermined, return code
    using Row = std::tuple<bool, bool, bool, bool, bool, bool, int>;
    const std::pair<long, Row> cases[] = {
        {0x0000000, {1, 1, 0, 0, 0, 0, 0}}, {0x0000001, {1, 0, 1, 0, 0, 0, 0}},
        {0x0000002, {1, 1, 0, 0, 0, 0, 0}},  // nothing to translate is a complete success
        {0x0120005, {1, 1, 0, 0, 0, 0, 0}}, {0x1000002, {0, 0, 0, 1, 1, 0, 2}},
        {0x1070015, {0, 0, 0, 1, 1, 0, 1}},  // a domain hides the number
        {0x2000003, {0, 0, 0, 1, 1, 0, 3}}, {0x3000006, {0, 0, 0, 1, 0, 1, 6}},
        {0x3000007, {0, 0, 0, 1, 1, 0, 7}},
    };
    for (const auto& [code, row] : cases) {
        const KORIResult r(code);
        EXPECT_EQ(Row(r.IsSuccess(), r.IsCompleteSuccess(), r.IsPartialSuccess(), r.IsFailure(),
                      r.IsDeterminedFailure(), r.IsUndetermined(), r.GetReturnCode()),
                  row)
            << std::hex << code;
    }
    EXPECT_EQ(std::make_pair(KORIResult::GetReturnCode(true), KORIResult::GetReturnCode(false)),
              std::make_pair(1, 0));
    EXPECT_STREQ(KORIResult::GetOKKOString(true), "OK");
    EXPECT_STREQ(KORIResult::GetOKKOString(false), "KO");
}

TEST(ResultCombination, AndAndOrFollowTheirTables) {
    // One code of each kind (success, partial, undetermined, failure) per side, the sides
    // different where possible. A cell: 'a' keeps the left code, 'b' takes the right one, 'p'
    // stores "Partial Success". An undetermined left side beside a partial one stays as it is.
    constexpr long left[] = {0x0000000, 0x0000001, 0x3000006, 0x100000D};
    constexpr long right[] = {0x0010000, 0x0000001, 0x3000006, 0x2000003};
    const std::pair<KORIResult& (KORIResult::*)(KORIResult), const char*> tables[] = {
        {&KORIResult::operator&=, "abbb aabb aaab aaaa"},
        {&KORIResult::operator|=, "appp aaaa paab ppaa"},
    };
    for (const auto& [combine, table] : tables) {
        for (int a = 0; a < 4; ++a) {
            for (int b = 0; b < 4; ++b) {
                KORIResult r(left[a]);
                EXPECT_EQ(&(r.*combine)(KORIResult(right[b])), &r);
                const char cell = table[5 * a + b];
                const long expected = cell == 'a' ? left[a] : cell == 'b' ? right[b] : 1;
                EXPECT_EQ(long(r), expected) << table << ": " << a << " with " << b;
            }
        }
    }
    // With &=, a success takes "No Entity to Translate" (2), which in turn keeps itself.
    for (const auto& [a, b] : {std::pair(0x30000L, 2L), std::pair(2L, 0L)}) {
        KORIResult r(a);
        EXPECT_EQ(long(r &= KORIResult(b)), 2) << a << " with " << b;
    }
}
