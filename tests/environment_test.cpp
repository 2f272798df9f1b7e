#include <korx/KORXEnvironment.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <tuple>

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

// Every entry as "name=value ", in order.
std::string Listed(const KORXProperties& p) {
    std::string text;
    KORXString name, value;
    for (int i = 0; i < p.GetCount(); ++i)
        text += p.Get(i, name, value) == 0 ? Text(name) + "=" + Text(value) + " " : "failed ";
    return text;
}

}  // namespace

TEST(Properties, SplitAtTheFirstEqualsReplaceInPlaceAndCopyDeeply) {
    KORXProperties p, assigned;
    EXPECT_EQ(p.Set(KORXString("A=B=C")), 0);
    EXPECT_EQ(p.Set(KORXString("empty=")), 0);
    EXPECT_EQ(p.Set(KORXString("no equals")), 0x1000001);
    EXPECT_EQ(p.Set(KORXString("a"), KORXString("lower")), 0);  // names keep their case
    KORXProperties copy(p);
    assigned = p;
    EXPECT_EQ(p.Set(KORXString("A=replaced")), 0);
    EXPECT_EQ(Listed(p), "A=replaced empty= a=lower ");
    EXPECT_EQ(Listed(copy) + "| " + Listed(assigned),
              "A=B=C empty= a=lower | A=B=C empty= a=lower ");

    KORXString name("kept"), value("kept");
    EXPECT_TRUE(p.Get(3, name, value) == 0x1000001 && p.Get(-1, name, value) == 0x1000001);
    EXPECT_EQ(p.Get(KORXString("no equals"), value), 0x1000001);
    EXPECT_EQ(Text(name) + " " + Text(value), "kept kept");  // untouched by the failures
    EXPECT_TRUE(p.Get(KORXString("a"), value) == 0 && Text(value) == "lower");
}

TEST(EnvironmentLookup, IgnoresCaseSplitsAtTheFirstEqualsMatchesWholeNamesAndTakesTheFirst) {
    EnvironmentGuard guard({"korxenvtest_var", "KORXENVTEST_VAR"});
    unsetenv("KORXENVTEST_VAR");
    // value stored (null: unset), name looked up, result, value read (as stored)
    const std::tuple<const char*, const char*, long, const char*> cases[] = {
        {"80", "KORXEnvTest_Var", 0, "80"},           {"B=C", "KORXENVTEST_VAR", 0, "B=C"},
        {"100%d%%", "korxenvtest_var", 0, "100%d%%"}, {"", "korxenvtest_var", 0, ""},
        {nullptr, "korxenvtest_var", 0x1000001, "-"}, {"80", "korxenvtest_va", 0x1000001, "-"},
        {"80", "korxenvtest_vars", 0x1000001, "-"}};
    for (const auto& [stored, name, result, expected] : cases) {
        stored != nullptr ? setenv("korxenvtest_var", stored, 1) : unsetenv("korxenvtest_var");
        KORXString value("-");
        EXPECT_EQ(KORXEnvironment::GetVariable(KORXString(name), value), result) << name;
        EXPECT_EQ(Text(value), expected) << name;
    }

    setenv("KORXENVTEST_VAR", "second", 1);  // after the lower-case one: the first match wins
    KORXString value;
    EXPECT_EQ(KORXEnvironment::GetVariable(KORXString("KorxEnvTest_Var"), value), 0);
    EXPECT_EQ(Text(value), "80");
}

TEST(EnvironmentFlag, TrueWordsInAnyCaseAreTrueEverythingElseIsFalse) {
    EnvironmentGuard guard({"KORXENVTEST_FLAG"});
    const std::pair<const char*, bool> cases[] = {
        {"on", true},    {"ON", true}, {"True", true}, {"tRUE", true},  {"yes", true},
        {"Yes", true},   {"1", false}, {"off", false}, {"No", false},   {"FALSE", false},
        {"Yess", false}, {"", false},  {" on", false}, {nullptr, false}};  // null: unset
    for (const auto& [value, expected] : cases) {
        value != nullptr ? setenv("KORXENVTEST_FLAG", value, 1) : unsetenv("KORXENVTEST_FLAG");
        bool flag = !expected;  // written even when the variable is missing
        EXPECT_EQ(KORXEnvironment::GetVariable(KORXString("korxenvtest_flag"), flag),
                  value != nullptr ? 0 : 0x1000001);
        EXPECT_EQ(flag, expected) << (value != nullptr ? value : "unset");
    }
}

TEST(EnvironmentPut, IsSeenLiveButNotInTheSnapshotIsReportedAndChangesNoOtherVariable) {
    EnvironmentGuard guard({"KORXENVTEST_PUT", "KORXENVTEST_TWO"});
    unsetenv("KORXENVTEST_PUT");
    KORXEnvironment& snapshot = KORXEnvironment::GetEnv();
    EXPECT_EQ(&KORXEnvironment::GetEnv(), &snapshot);

    EventRecorder recorder;
    KORXString value("a=b 50%% %s"), two("two"), longer("three, longer than before");
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_PUT"), value), 0);
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_TWO"), two), 0);
    // One more formatting pass: "%%" is stored as "%", other conversions as written.
    EXPECT_EQ(Getenv("KORXENVTEST_PUT"), "a=b 50% %s");
    KORXString live, copied("untouched");
    EXPECT_EQ(KORXEnvironment::GetVariable(KORXString("korxenvtest_put"), live), 0);
    EXPECT_EQ(snapshot.Get(KORXString("KORXENVTEST_PUT"), copied), 0x1000001);
    EXPECT_EQ(Text(live) + " | " + Text(copied), "a=b 50% %s | untouched");
    ASSERT_FALSE(recorder.events.empty());
    EXPECT_EQ(recorder.events[0].message, "Environment variable: KORXENVTEST_PUT=a=b 50% %s\n");

    // A later put never changes a variable set earlier under another name.
    ASSERT_EQ(KORXEnvironment::PutVariable(KORXString("KORXENVTEST_PUT"), longer), 0);
    EXPECT_EQ(Getenv("KORXENVTEST_PUT") + "; " + Getenv("KORXENVTEST_TWO"),
              "three, longer than before; two");
    EXPECT_EQ(KORXEnvironment::PutVariable(KORXString(""), two), 0x1000001);
}
