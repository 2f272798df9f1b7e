#include <korx/KORXEnvironment.h>
#include <korx/KORXProperties.h>
#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/environment_guard.h"
#include "support/event_recorder.h"

namespace {

std::string Text(const KORXString& s) {
    const char* bytes = s;
    return bytes != nullptr ? bytes : "";
}

std::string Getenv(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "<unset>";
}

}  // namespace

TEST(Properties, EntriesSplitAtTheFirstEqualsAndNamesReplaceInPlace) {
    KORXProperties p;
    EXPECT_EQ(p.Set(KORXString("A=B=C")), 0);
    EXPECT_EQ(p.Set(KORXString("empty=")), 0);
    EXPECT_EQ(p.Set(KORXString("no equals")), 0x1000001);
    EXPECT_EQ(p.Set(KORXString("a"), KORXString("lower")), 0);  // names keep their case
    EXPECT_EQ(p.Set(KORXString("A=replaced")), 0);
    ASSERT_EQ(p.GetCount(), 3);

    KORXString name("kept");
    KORXString value("kept");
    const char* expected[][2] = {{"A", "replaced"}, {"empty", ""}, {"a", "lower"}};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(p.Get(i, name, value), 0);
        EXPECT_EQ(Text(name), expected[i][0]);
        EXPECT_EQ(Text(value), expected[i][1]);
    }
    EXPECT_EQ(p.Get(3, name, value), 0x1000001);
    EXPECT_EQ(p.Get(-1, name, value), 0x1000001);
    EXPECT_EQ(p.Get(KORXString("no equals"), value), 0x1000001);
    EXPECT_EQ(Text(value), "lower");  // untouched by the failures
}

TEST(Properties, CopiesAreIndependent) {
    KORXProperties original;
    original.Set(KORXString("k"), KORXString("v"));
    KORXProperties copy(original);
    copy.Set(KORXString("k"), KORXString("changed"));
    copy.Set(KORXString("extra"), KORXString("x"));
    original = copy;
    copy.Set(KORXString("k"), KORXString("again"));

    KORXString value;
    EXPECT_EQ(original.GetCount(), 2);
    ASSERT_EQ(original.Get(KORXString("k"), value), 0);
    EXPECT_EQ(Text(value), "changed");
}

TEST(EnvironmentLookup, IgnoresCaseSplitsAtTheFirstEqualsAndMatchesWholeNames) {
    EnvironmentGuard guard({"korxenvtest_level", "KORXENVTEST_EQ", "KORXENVTEST_PCT",
                            "KORXENVTEST_EMPTY", "KORXENVTEST_MISSING"});
    setenv("korxenvtest_level", "80", 1);
    setenv("KORXENVTEST_EQ", "B=C", 1);
    setenv("KORXENVTEST_PCT", "100%d%%", 1);
    setenv("KORXENVTEST_EMPTY", "", 1);
    unsetenv("KORXENVTEST_MISSING");

    struct Case {
        const char* name;
        long result;
        const char* value;
    };
    const Case cases[] = {
        {"KORXEnvTest_Level", 0, "80"},
        {"korxenvtest_eq", 0, "B=C"},
        {"KORXENVTEST_PCT", 0, "100%d%%"},  // read back as stored
        {"KORXENVTEST_EMPTY", 0, ""},
        {"KORXENVTEST_MISSING", 0x1000001, "untouched"},
        {"KORXENVTEST_LEV", 0x1000001, "untouched"},  // a prefix is not the name
        {"KORXENVTEST_LEVELS", 0x1000001, "untouched"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        KORXString value("untouched");
        EXPECT_EQ(KORXEnvironment::GetVariable(KORXString(c.name), value), c.result);
        EXPECT_EQ(Text(value), c.value);
    }
}

TEST(EnvironmentLookup, TheFirstEntryMatchingInAnyCaseWins) {
    EnvironmentGuard guard({"KORXENVTEST_DUP", "korxenvtest_dup"});
    unsetenv("KORXENVTEST_DUP");
    unsetenv("korxenvtest_dup");
    setenv("korxenvtest_dup", "first", 1);  // setenv appends new variables at the end
    setenv("KORXENVTEST_DUP", "second", 1);

    KORXString value;
    ASSERT_EQ(KORXEnvironment::GetVariable(KORXString("KorxEnvTest_Dup"), value), 0);
    EXPECT_EQ(Text(value), "first");
}

TEST(EnvironmentFlag, TrueWordsInAnyCaseAreTrueEverythingElseIsFalse) {
    EnvironmentGuard guard({"KORXENVTEST_FLAG"});
    struct Case {
        const char* value;
        bool flag;
    };
    const Case cases[] = {
        {"on", true},    {"ON", true}, {"True", true}, {"tRUE", true}, {"yes", true},
        {"Yes", true},   {"1", false}, {"off", false}, {"No", false},  {"FALSE", false},
        {"Yess", false}, {"", false},  {" on", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        setenv("KORXENVTEST_FLAG", c.value, 1);
        bool flag = !c.flag;
        EXPECT_EQ(KORXEnvironment::GetVariable(KORXString("korxenvtest_flag"), flag), 0);
        EXPECT_EQ(flag, c.flag);
    }

    unsetenv("KORXENVTEST_FLAG");
    bool flag = true;
    EXPECT_EQ(KORXEnvironment::GetVariable(KORXString("KORXENVTEST_FLAG"), flag), 0x1000001);
    EXPECT_FALSE(flag);  // written even when the variable is missing
}

TEST(EnvironmentPut, IsSeenLiveButNotInTheSnapshotAndIsReported) {
    EnvironmentGuard guard({"KORXENVTEST_PUT"});
    unsetenv("KORXENVTEST_PUT");
    KORXEnvironment& snapshot = KORXEnvironment::GetEnv();
    EXPECT_EQ(&KORXEnvironment::GetEnv(), &snapshot);

    EventRecorder recorder;
    KORXString value("a=b 50%% %s");
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_PUT"), value), 0);

    // One more formatting pass: "%%" is stored as "%", other conversions as written.
    EXPECT_EQ(Getenv("KORXENVTEST_PUT"), "a=b 50% %s");
    KORXString live;
    ASSERT_EQ(KORXEnvironment::GetVariable(KORXString("korxenvtest_put"), live), 0);
    EXPECT_EQ(Text(live), "a=b 50% %s");
    KORXString copied("untouched");
    EXPECT_EQ(snapshot.Get(KORXString("KORXENVTEST_PUT"), copied), 0x1000001);
    EXPECT_EQ(Text(copied), "untouched");

    bool reported = false;
    for (const RecordedEvent& e : recorder.events)
        reported |= e.message.find("Environment variable: KORXENVTEST_PUT=a=b 50%") == 0;
    EXPECT_TRUE(reported);
}

TEST(EnvironmentPut, ALaterPutNeverChangesAnEarlierVariableAndEmptyNamesAreRefused) {
    EnvironmentGuard guard({"KORXENVTEST_ONE", "KORXENVTEST_TWO"});
    KORXString one("one");
    KORXString two("two");
    KORXString three("three, longer than before");
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_ONE"), one), 0);
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_TWO"), two), 0);
    one = KORXString("changed by the caller");  // the environment holds its own text
    EXPECT_EQ(Getenv("KORXENVTEST_ONE"), "one");
    EXPECT_EQ(Getenv("KORXENVTEST_TWO"), "two");

    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_ONE"), three), 0);
    EXPECT_EQ(Getenv("KORXENVTEST_ONE"), "three, longer than before");
    EXPECT_EQ(Getenv("KORXENVTEST_TWO"), "two");
    EXPECT_EQ(KORXEnvironment::PutVariable(KORXString(""), two), 0x1000001);
}
