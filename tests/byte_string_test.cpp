#include <korx/Gk_String.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <utility>

using namespace std::string_literals;

namespace {

// Every byte of the buffer, terminators included, so a missing or doubled 0 shows.
std::string Bytes(const Gk_String& s) {
    const char* first = s;
    return first == nullptr ? std::string() : std::string(first, static_cast<size_t>(s.len()));
}

}  // namespace

TEST(ByteString, CountsTheTerminatorInLenButNotInDataLen) {
    const std::tuple<Gk_String, int, int> cases[] = {
        {"abc", 4, 3}, {nullptr, 1, 0}, {Gk_String("abc", 2), 2, 2}, {Gk_String(), 0, 0}};
    for (const auto& [s, len, dataLen] : cases)
        EXPECT_EQ(std::make_pair(s.len(), s.dataLen()), std::make_pair(len, dataLen));
    EXPECT_EQ(static_cast<char*>(Gk_String()), nullptr);
}

TEST(ByteString, EditsKeepTheIntendedBytes) {
    static char cdef[] = "cdef", c0[] = "c";
    const std::tuple<Gk_String, std::function<void(Gk_String&)>, std::string> cases[] = {
        {"abc", [](Gk_String& s) { s.chop(1); }, "ab\0"s},  // n + 1 bytes are kept
        {"abc", [](Gk_String& s) { s.chop(-7); }, "\0"s},
        {"abc", [](Gk_String& s) { s.chop(3); }, "abc\0\0"s},
        {"abc", [](Gk_String& s) { s.chop(4); }, "abc\0"s},
        {Gk_String(), [](Gk_String& s) { s.ensure(3); }, "  \0"s},
        {Gk_String("ab", 2), [](Gk_String& s) { s.ensure(4); }, "a  \0"s},  // b goes
        {"abc", [](Gk_String& s) { s.ensure(1); }, "ab\0"s},
        {"abcd", [](Gk_String& s) { s.shrinkEnd(2); }, "abc"s},
        {"abcd", [](Gk_String& s) { s.shrinkFront(2); }, "cd\0"s},
        {"ab", [](Gk_String& s) { s.shrinkEnd(9); }, ""s},
        {"ab", [](Gk_String& s) { s.shrinkFront(9); }, ""s},
        {"'''", [](Gk_String& s) { s.sqeezeQuotes(); }, "''\0"s},  // pairs do not overlap
        {"a'b''''c'", [](Gk_String& s) { s.sqeezeQuotes(); }, "a'b''c'\0"s},
        {"ab", [](Gk_String& s) { s.append("cd"); }, "abcd\0"s},
        {Gk_String("ab", 2), [](Gk_String& s) { s.append("cd"); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append2("cd"); }, "ab\0cd"s},
        {"ab", [](Gk_String& s) { s.append('c'); }, "ab\0c"s},
        {"ab", [](Gk_String& s) { s.append(2, cdef); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append(2, c0); }, "abc\0"s},  // its 0 is the terminator
        {"ab", [](Gk_String& s) { s.append(Gk_String("cd", 2)); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append(s); }, "abab\0"s},
        // Its own bytes, while the buffer grows under them.
        {"abcdefghijk", [](Gk_String& s) { s.append(static_cast<char*>(s)); },
         "abcdefghijkabcdefghijk\0"s},
    };
    for (const auto& row : cases) {
        const auto& [start, edit, bytes] = row;
        Gk_String s = start.copy();
        edit(s);
        EXPECT_EQ(Bytes(s), bytes) << "row " << &row - cases;
    }
}

TEST(ByteString, SubsetStaysInsideTheBuffer) {
    const Gk_String s("abcdef");  // 7 bytes
    const std::tuple<int, int, std::string> cases[] = {
        {2, 3, "cde\0"s}, {4, 10, "ef\0"s}, {7, 2, "\0"s}, {1, -3, "\0"s}, {-2, 2, "ab\0"s}};
    for (const auto& [start, n, bytes] : cases)
        EXPECT_EQ(Bytes(s.subset(start, n)), bytes) << start << ", " << n;
}

TEST(ByteString, EmptyStringsEqualOnlyEachOther) {
    // a, b, a == b, a < b; b < a never holds
    const std::tuple<Gk_String, Gk_String, bool, bool> cases[] = {
        {Gk_String(), Gk_String(), true, false},
        {Gk_String(), Gk_String(""), false, false},
        {Gk_String("abc", 3), Gk_String("abc"), true, false},  // read no further than the count
        {Gk_String("abx", 2), Gk_String("abc"), false, true},
        {Gk_String("abc"), Gk_String("abd"), false, true},
        {Gk_String("a"), Gk_String("\xE9"), false, true},  // bytes compare unsigned
    };
    for (const auto& [a, b, equal, less] : cases)
        EXPECT_EQ(std::make_tuple(a == b, b == a, a < b, b < a),
                  std::make_tuple(equal, equal, less, false))
            << Bytes(a) << " | " << Bytes(b);
}

TEST(ByteString, CopiesShareTheBufferUnlessCopied) {
    Gk_String original("ab"), shared = original, own = original.copy();
    shared.append("c");
    own.append("d");
    EXPECT_EQ(Bytes(original) + "|" + Bytes(own), "abc\0|abd\0"s);
}
