// Path matching of arbitrary bytes. The input is a pattern, a 0 byte, then a text (no 0 byte:
// the whole input is the pattern and the text is empty). Both are matched both ways with
// matchPathPattern and matchPathString, in several kinds of view of the same bytes:
//
//   - a terminated copy (the reference),
//   - a view of exactly the bytes, without terminator,
//   - a view of a block that holds exactly the bytes, so that reading one byte past the count
//     leaves the allocation,
//   - the same bytes behind a prefix, seen through an offset, terminated or not,
//   - views whose offset is at or past the count (empty text).
//
// Views read their text up to its first 0 byte and never past their count, so every kind of
// view of the same bytes must give the reference's answers. Besides, for any input: a pattern
// without special bytes matches exactly the paths it is a leading run of whole components of
// (without regard to case); the pattern "*" matches everything; a text matches the pattern
// that escapes each of its bytes; changing the case of the text's letters changes nothing;
// and matchPathString answers -1 or where the component after the prefix begins.
#include <korx/Gk_String.h>
#include <korx/KORXDynamicArray.h>

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void check(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "path_pattern_fuzz: %s\n", what);
    std::abort();
}

// A block of exactly bytes.size() slots (none for empty bytes): the allocation ends with
// the count.
KORXDynamicArray<char> tightBlock(const std::string& bytes) {
    const int n = static_cast<int>(bytes.size());
    if (n == 0)
        return KORXDynamicArray<char>();
    KORXDynamicArray<char> block(n, 'x');
    for (int i = 0; i < n; ++i)
        block[i] = bytes[static_cast<size_t>(i)];
    return block;
}

// Junk before the text, seen past through the offset; it must never be read. Holds a '/' and
// a '.' so that a matcher looking behind the view's start for a component boundary would be
// led astray.
const std::string kPrefix = "Zq/.";

constexpr size_t kLargeInput = 1u << 18;

// The kinds of view of one text, the reference first. `bytes` may hold 0 bytes; the text ends
// at the first of them. With `few`, only the reference and a view at an offset into a block that
// ends with the text's bytes.
std::vector<Gk_ROString> viewsOf(const std::string& bytes, bool few) {
    std::vector<Gk_ROString> v;
    const std::string terminated(bytes.c_str());  // up to the first 0 byte
    v.emplace_back(terminated.c_str());

    Gk_ROString tightBehind(tightBlock(kPrefix + bytes));
    tightBehind.setoffset(static_cast<int>(kPrefix.size()));
    v.push_back(tightBehind);
    if (few)
        return v;

    v.emplace_back(tightBlock(terminated));
    v.emplace_back(bytes.data(), static_cast<int>(bytes.size()));
    v.emplace_back(tightBlock(bytes));

    Gk_ROString behind((kPrefix + terminated).c_str());
    behind.setoffset(static_cast<int>(kPrefix.size()));
    v.push_back(behind);

    Gk_ROString stepped(tightBlock(kPrefix + terminated));
    stepped.offset(1);
    stepped.offset(static_cast<int>(kPrefix.size()) - 1);
    v.push_back(stepped);
    return v;
}

// Views of an empty text: offset at or past the count, and no buffer content at all.
std::vector<Gk_ROString> emptyViews(const std::string& bytes) {
    std::vector<Gk_ROString> out;
    out.emplace_back("");
    out.emplace_back();
    const int n = static_cast<int>(bytes.size());
    Gk_ROString atEnd(tightBlock(bytes));
    atEnd.setoffset(n);
    out.push_back(atEnd);
    Gk_ROString pastEnd(tightBlock(bytes));
    pastEnd.setoffset(n + 7);
    out.push_back(pastEnd);
    return out;
}

bool hasSpecialByte(const std::string& text) {
    return text.find_first_of("?*[\\") != std::string::npos;
}

bool equalIgnoringCase(const std::string& a, const std::string& b, size_t n) {
    for (size_t i = 0; i < n; ++i) {
        if (std::tolower(static_cast<unsigned char>(a[i])) !=
            std::tolower(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

// Whether a pattern without special bytes matches path: a leading run of whole components.
bool literalMatches(const std::string& pattern, const std::string& path) {
    const size_t n = pattern.size();
    return path.size() >= n && equalIgnoringCase(pattern, path, n) &&
           (path.size() == n || path[n] == '/');
}

std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        out += '\\';
        out += c;
    }
    return out;
}

std::string caseSwapped(const std::string& text) {
    std::string out = text;
    for (char& c : out) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 'a' && byte <= 'z')
            c = static_cast<char>(byte - 'a' + 'A');
        else if (byte >= 'A' && byte <= 'Z')
            c = static_cast<char>(byte - 'A' + 'a');
    }
    return out;
}

void checkPathString(const std::string& path, const std::string& prefix, int result) {
    const int np = static_cast<int>(prefix.size());
    const int nt = static_cast<int>(path.size());
    if (!prefix.empty() && prefix[0] == '/') {
        check(result == (!path.empty() && path[0] == '/' ? 1 : 0), "rooted prefix");
        return;
    }
    if (!path.empty() && path[0] == '/') {
        check(result == -1, "rooted path, relative prefix");
        return;
    }
    const bool leads = nt >= np && path.compare(0, static_cast<size_t>(np), prefix) == 0;
    const bool boundary = leads && (nt == np || path[static_cast<size_t>(np)] == '/');
    if (result == -1) {
        check(!boundary, "a prefix of whole components was refused");
        return;
    }
    check(result <= nt, "matchPathString past the end of the path");
    if (np > 0) {
        check(boundary, "matchPathString accepted a prefix that is not whole components");
        check(result == (nt > np ? np + 1 : np), "matchPathString position");
    }
}

void matchBothWays(const std::string& patternBytes, const std::string& textBytes) {
    const std::string pattern(patternBytes.c_str());
    const std::string text(textBytes.c_str());
    // A pattern of many stars costs up to (pattern length x text length) steps a match: large
    // inputs get fewer kinds of view, so that one input stays well within a second.
    const bool few = pattern.size() * text.size() > kLargeInput;
    const std::vector<Gk_ROString> patterns = viewsOf(patternBytes, few);
    const std::vector<Gk_ROString> texts = viewsOf(textBytes, few);
    const Gk_ROString& p0 = patterns[0];
    const Gk_ROString& t0 = texts[0];

    const bool textMatches = t0.matchPathPattern(p0);
    const bool patternMatches = p0.matchPathPattern(t0);
    const int textUnder = t0.matchPathString(p0);
    const int patternUnder = p0.matchPathString(t0);

    // Each kind of text view against the reference pattern, each kind of pattern view against
    // the reference text, and the kinds paired with each other.
    const auto same = [&](const Gk_ROString& t, const Gk_ROString& p) {
        check(t.matchPathPattern(p) == textMatches, "view kind changed matchPathPattern");
        check(p.matchPathPattern(t) == patternMatches, "view kind changed matchPathPattern");
        check(t.matchPathString(p) == textUnder, "view kind changed matchPathString");
        check(p.matchPathString(t) == patternUnder, "view kind changed matchPathString");
    };
    for (size_t i = 1; i < texts.size(); ++i) {
        same(texts[i], p0);
        same(t0, patterns[i]);
        if (!few)
            same(texts[i], patterns[i]);
    }

    const std::vector<Gk_ROString> emptyTexts = emptyViews(textBytes);
    const std::vector<Gk_ROString> emptyPatterns = emptyViews(patternBytes);
    const bool emptyMatches = Gk_ROString("").matchPathPattern(p0);
    const bool matchesEmpty = t0.matchPathPattern(Gk_ROString(""));
    const int underEmpty = t0.matchPathString(Gk_ROString(""));
    for (const Gk_ROString& e : emptyTexts)
        check(e.matchPathPattern(p0) == emptyMatches, "empty view kind changed the answer");
    for (const Gk_ROString& e : emptyPatterns) {
        check(t0.matchPathPattern(e) == matchesEmpty, "empty view kind changed the answer");
        check(t0.matchPathString(e) == underEmpty, "empty view kind changed the answer");
        for (const Gk_ROString& f : emptyTexts) {
            check(f.matchPathPattern(e), "an empty pattern matches an empty text");
            check(f.matchPathString(e) == 0, "an empty prefix of an empty path");
        }
    }

    checkPathString(text, pattern, textUnder);
    checkPathString(pattern, text, patternUnder);
    if (text.empty() || text[0] != '/')
        check(t0.matchPathString(t0) == static_cast<int>(text.size()), "a path under itself");

    if (!hasSpecialByte(pattern))
        check(textMatches == literalMatches(pattern, text), "pattern without special bytes");
    if (!hasSpecialByte(text))
        check(patternMatches == literalMatches(text, pattern), "pattern without special bytes");

    check(t0.matchPathPattern(Gk_ROString("*")), "\"*\" matches every text");
    check(t0.matchPathPattern(Gk_ROString(escaped(text).c_str())), "escaped text");

    if (!few) {
        const Gk_ROString swapped(caseSwapped(text).c_str());
        check(swapped.matchPathPattern(p0) == textMatches, "case of the text changed the answer");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const size_t zero = input.find('\0');
    const std::string pattern = input.substr(0, zero);
    const std::string text = zero == std::string::npos ? std::string() : input.substr(zero + 1);
    matchBothWays(pattern, text);
    return 0;
}
