#include <korx/KORXStringTokenizer.h>

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

namespace {

// Every token as UTF-8.
std::vector<std::string> Tokens(const KORXStringTokenizer& tokenizer) {
    std::vector<std::string> tokens;
    for (int i = 0; i < tokenizer.GetTokenCount(); ++i) {
        KORXString token("(unset)");
        EXPECT_EQ(tokenizer.GetToken(i, token), 0) << i;
        const char* bytes = token;
        tokens.push_back(bytes != nullptr ? bytes : "");
    }
    return tokens;
}

using List = std::vector<std::string>;

}  // namespace

TEST(StringTokenizer, KeepsEmptyTokensBetweenAndAfterDelimiters) {
    const std::tuple<const char*, KORXWChar, List> cases[] = {
        {"a,,b,", u',', {"a", "", "b", ""}},
        {",", u',', {"", ""}},
        {"abc", u',', {"abc"}},
        {"", u',', {}},
        {"caf\xC3\xA9;\xC3\xBC", u';', {"caf\xC3\xA9", "\xC3\xBC"}},  // read as UTF-8
        {"x\xC3\xA9y\xC3\xA9", u'\u00E9', {"x", "y", ""}},
        {"x\xF0\x9F\x98\x80y", u'y', {"x\xF0\x9F\x98\x80", ""}},
    };
    for (const auto& [text, delimiter, tokens] : cases) {
        EXPECT_EQ(Tokens(KORXStringTokenizer(text, delimiter)), tokens) << text;
        EXPECT_EQ(Tokens(KORXStringTokenizer(KORXString(text), delimiter)), tokens) << text;
    }
}

TEST(StringTokenizer, RefusesIndicesOutsideTheTokens) {
    const KORXStringTokenizer none("", u','), two("a,b", u',');
    for (const auto& [tokenizer, i] :
         {std::make_pair(&none, 0), std::make_pair(&two, 2), std::make_pair(&two, -1)}) {
        KORXString out("kept");
        EXPECT_EQ(static_cast<long>(tokenizer->GetToken(i, out)), 0x1000001L) << i;
        EXPECT_STREQ(static_cast<const char*>(out), "kept");
    }
}

TEST(StringTokenizer, InitializeReplacesTheTokensOfEveryCopy) {
    KORXStringTokenizer tokenizer("a,b", u',');
    const KORXStringTokenizer copy(tokenizer);
    tokenizer.Initialize(KORXString("p;q;r"), u';');
    EXPECT_EQ(Tokens(tokenizer), (List{"p", "q", "r"}));
    EXPECT_EQ(Tokens(copy), (List{"p", "q", "r"}));
    tokenizer.Initialize(KORXString(""), u';');
    EXPECT_EQ(copy.GetTokenCount(), 0);
}
