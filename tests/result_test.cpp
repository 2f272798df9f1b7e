#include <korx/KORIResult.h>

#include <gtest/gtest.h>

#include <tuple>

namespace {

testing::Message Hex(long code) { return testing::Message() << std::hex << std::showbase << code; }

}  // namespace

TEST(ResultCode, SplitsIntoNumberDomainAndCriticityAndKeepsAll32Bits) {
    const std::tuple<long, int, int, int> cases[] = {
        {0x3A5BEEF, 0xBEEF, 0xA5, 3},
        {0x200FFFF, 0xFFFF, 0, 2},
        {0xF1020304, 0x304, 2, 1},  // bits 28-31 belong to no field
    };
    for (const auto& [code, number, domain, criticity] : cases) {
        const KORIResult r(code);
        EXPECT_EQ(std::make_tuple(r.GetNumber(), r.GetDomain(), r.GetCriticity(), long(r)),
                  std::make_tuple(number, domain, criticity, code))
            << Hex(code);
    }
    EXPECT_TRUE(KORIResult() == 0x3000006);
    EXPECT_TRUE(KORIResult::E_FAIL_RESULT == 0x1000001u);
    EXPECT_TRUE(KORIResult(0x1000002) != KORIResult::E_FAIL_RESULT);
}

TEST(ResultMessage, NamesEveryKnownCodeAndNoOther) {
    const std::pair<long, const char*> cases[] = {
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
        {0x1000008, "Unknown Result"},  // "option not defined" has no message of its own
        {0x0000003, "Unknown Result"},
        {0x1010001, "Unknown Result"},
        {0x11000001, "Unknown Result"},
    };
    for (const auto& [code, message] : cases)
        EXPECT_STREQ(KORIResult(code).GetMessage(), message) << Hex(code);
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
            << Hex(code);
    }
    EXPECT_EQ(std::make_pair(KORIResult::GetReturnCode(true), KORIResult::GetReturnCode(false)),
              std::make_pair(1, 0));
    EXPECT_STREQ(KORIResult::GetOKKOString(true), "OK");
    EXPECT_STREQ(KORIResult::GetOKKOString(false), "KO");
}

namespace {

// A representative of each kind (success, partial, undetermined, failure) on each side, the
// two sides different where possible so that the outcome tells which one was kept.
constexpr long kLeft[] = {0x0000000, 0x0000001, 0x3000006, 0x100000D};
constexpr long kRight[] = {0x0010000, 0x0000001, 0x3000006, 0x2000003};

// Rows: the left kind, columns: the right kind. 'a' keeps the left side, 'b' takes the right
// one, 'p' stores "Partial Success".
void CheckTable(const char* const (&table)[4], KORIResult& (KORIResult::*combine)(KORIResult)) {
    for (int a = 0; a < 4; ++a) {
        for (int b = 0; b < 4; ++b) {
            const char outcome = table[a][b];
            KORIResult left(kLeft[a]);
            EXPECT_EQ(&(left.*combine)(KORIResult(kRight[b])), &left);
            EXPECT_EQ(long(left), outcome == 'a'   ? kLeft[a]
                                  : outcome == 'b' ? kRight[b]
                                                   : 1)
                << Hex(kLeft[a]) << " with " << Hex(kRight[b]);
        }
    }
}

}  // namespace

TEST(ResultCombination, AndKeepsAFailureAndOtherwiseTheLessSuccessfulSide) {
    CheckTable({"abbb", "aabb", "aaab", "aaaa"}, &KORIResult::operator&=);

    // A success takes "No Entity to Translate" (2), which in turn keeps itself.
    const std::tuple<long, long> toTwo[] = {{0, 2}, {0x30000, 2}, {2, 0}, {2, 0x30000}};
    for (const auto& [a, b] : toTwo) {
        KORIResult r(a);
        EXPECT_EQ(long(r &= KORIResult(b)), 2) << Hex(a) << " with " << Hex(b);
    }
}

TEST(ResultCombination, OrMakesASuccessBesideAnythingElseAPartialSuccess) {
    // An undetermined left side beside a partial success stays undetermined.
    CheckTable({"appp", "aaaa", "paab", "ppaa"}, &KORIResult::operator|=);
}
