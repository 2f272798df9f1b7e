#include <korx/Gk_Exception.h>
#include <korx/KORXError.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "support/event_recorder.h"

namespace {

// Leaves the abort flag clear and no abort callback installed, whatever the test did.
struct AbortStateGuard {
    ~AbortStateGuard() {
        KORXCallbackShared::m_AbortCallback = nullptr;
        try {
            Gk_ErrMgr::checkAbort();
        } catch (const KORXAbortException&) {
        }
    }
};

bool answerYes() { return true; }
bool answerNo() { return false; }

}  // namespace

TEST(MarkerCompare, IgnoresCaseHandlesHashesAndRanksAPrefixAsGreater) {
    struct Case {
        const char* a;
        const char* b;
        int result;
    };
    const Case cases[] = {
        {"abc", "ABC", 0}, {"ab", "abc", 1},  {"abc", "ab", -1},  {"a#", "a", 0},
        {"a", "a#", 0},    {"a#b", "ab", 0},  {"a#", "a#", 0},    {"a#", "abc", 1},
        {"abc", "a#", -1}, {"abd", "abc", 1}, {"Abc", "abd", -1}, {"", "", 0},
        {"##x", "x", 0},   {"[", "A", -1},  // 'A' compares as 'a', above '['
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.a) + " vs " + c.b);
        EXPECT_EQ(Gk_Marker(c.a).compare(Gk_Marker(c.b)), c.result);
    }
}

TEST(MarkerCompare, EqualityAndOrderAreByteWiseAndCaseSensitive) {
    EXPECT_FALSE(Gk_Marker("abc") == Gk_Marker("ABC"));
    EXPECT_TRUE(Gk_Marker("abc") == Gk_Marker("abc"));
    EXPECT_TRUE(Gk_Marker("ABC") < Gk_Marker("abc"));
    EXPECT_FALSE(Gk_Marker("ab") < Gk_Marker("ab"));
    EXPECT_TRUE(Gk_Exception("Gk_IOException") == Gk_Marker("Gk_IOException"));
    EXPECT_FALSE(Gk_Exception("Gk_IOException") == Gk_Marker("gk_ioexception"));
}

TEST(ErrorManager, RaisePublishesTheTokenAndThrowsTheExceptionPart) {
    EventRecorder recorder;
    bool caughtAsException = false;
    try {
        Gk_ErrMgr::raise(Gk_IOException("Gk_IOException"));
    } catch (const Gk_IOException&) {
        FAIL() << "a raised exception is thrown as its Gk_Exception part";
    } catch (const Gk_Exception& e) {
        caughtAsException = true;
        EXPECT_STREQ(e.token(), "Gk_IOException");
    }
    EXPECT_TRUE(caughtAsException);
    EXPECT_THROW(Gk_ErrMgr::raise(Gk_Exception("named")), Gk_Marker);
    ASSERT_EQ(recorder.events.size(), 2u);
    EXPECT_EQ(recorder.events[0].name, "KORXErrorEvent");
    EXPECT_EQ(recorder.events[0].level, 80);
    EXPECT_EQ(recorder.events[0].description, "Error : Gk_IOException\n");
}

TEST(ErrorManager, ATokenHoldingPercentSignsNeverReadsArguments) {
    EventRecorder recorder;
    EXPECT_THROW(Gk_ErrMgr::raise(Gk_Exception("at %s: 100%%")), Gk_Exception);
    ASSERT_EQ(recorder.events.size(), 1u);
    EXPECT_EQ(recorder.events[0].message, "at %s: 100%");
}

TEST(ErrorManager, AbortFlagIsConsumedByCheckAbortOnly) {
    AbortStateGuard guard;
    EXPECT_FALSE(Gk_ErrMgr::shouldAbort());
    Gk_ErrMgr::checkAbort();  // nothing requested: returns
    Gk_ErrMgr::setAbort();
    EXPECT_TRUE(Gk_ErrMgr::shouldAbort());
    EXPECT_THROW(KORXCallbackShared::IsAborted(), KORXAbortException);
    EXPECT_THROW(KORXCallbackShared::IsAborted(), KORXAbortException);  // the flag stays
    EXPECT_THROW(Gk_ErrMgr::checkAbort(), KORXAbortException);
    EXPECT_FALSE(Gk_ErrMgr::shouldAbort());
    Gk_ErrMgr::checkAbort();
}

TEST(ErrorManager, IsAbortedAsksTheCallbackAndNeverAnswersTrue) {
    AbortStateGuard guard;
    EXPECT_FALSE(KORXCallbackShared::IsAborted());  // no callback, no flag
    KORXCallbackShared::m_AbortCallback = answerNo;
    EXPECT_FALSE(KORXCallbackShared::IsAborted());
    KORXCallbackShared::m_AbortCallback = answerYes;
    EXPECT_THROW(KORXCallbackShared::IsAborted(), KORXAbortException);
    EXPECT_FALSE(Gk_ErrMgr::shouldAbort());  // the callback's answer sets no flag
    KORXCallbackShared::m_AbortCallback = answerNo;
    Gk_ErrMgr::setAbort();
    EXPECT_THROW(KORXCallbackShared::IsAborted(), KORXAbortException);
}

TEST(Assertions, DoAssertPublishesTheSourceAndLineAndCarriesOn) {
    EventRecorder recorder;
    Gk_ErrMgr::doAssert("source_stream/ind/KORXStringInputStream", 29);
    ASSERT_EQ(recorder.events.size(), 1u);
    const RecordedEvent& event = recorder.events[0];
    EXPECT_EQ(event.name, "KORXAssertEvent");
    EXPECT_EQ(event.level, 30);
    EXPECT_EQ(event.message, "source_stream/ind/KORXStringInputStream [29]");
    EXPECT_EQ(event.description, "Assert : source_stream/ind/KORXStringInputStream [29]\n");
}

TEST(Assertions, PrintfFormatsTwiceAndPublishesNothingForANullFormat) {
    EventRecorder recorder;
    KORXAssert::Printf(nullptr);
    EXPECT_TRUE(recorder.events.empty());

    KORXAssert::Printf("%s", "50%%");      // "50%%" survives the first pass
    KORXAssert::Printf("%d%% done", 100);  // "100% done": "% d" is copied, never formatted
    KORXAssert::Printf("%s", "");          // empty: no message, description still ends
    ASSERT_EQ(recorder.events.size(), 3u);
    EXPECT_EQ(recorder.events[0].message, "50%");
    EXPECT_EQ(recorder.events[1].message, "100% done");
    EXPECT_FALSE(recorder.events[2].hasMessage);
    EXPECT_EQ(recorder.events[2].description, "Assert : \n");
}

TEST(Assertions, EveryPrintfPathCutsLongMessagesAt1023Bytes) {
    for (const size_t length : {size_t{1023}, size_t{1024}, size_t{5000}}) {
        SCOPED_TRACE(length);
        const std::string text(length, 'm');
        const std::string kept = text.substr(0, 1023);
        EventRecorder recorder;
        KORXAssert::Printf("%s", text.c_str());
        KORXAssertEvent::Fire("%s", text.c_str());
        KORXError::Printf("%s", text.c_str());
        KORXErrorEvent::Fire("%s", text.c_str());
        EXPECT_THROW(Gk_ErrMgr::raise(Gk_Exception(text.c_str())), Gk_Exception);
        ASSERT_EQ(recorder.events.size(), 5u);
        for (const RecordedEvent& event : recorder.events)
            EXPECT_EQ(event.message, kept);
        EXPECT_EQ(KORXAssertEvent("%s", text.c_str()).GetMessage(), kept);
        EXPECT_EQ(KORXErrorEvent("%s", text.c_str()).GetMessage(), kept);
    }
}

TEST(Assertions, CopiedEventsOwnTheirMessages) {
    KORXAssertEvent original("%d", 7);
    KORXAssertEvent copy(original);
    KORXAssertEvent assigned("other");
    assigned = original;
    EXPECT_STREQ(copy.GetMessage(), "7");
    EXPECT_STREQ(assigned.GetMessage(), "7");
    EXPECT_NE(copy.GetMessage(), original.GetMessage());
}

TEST(AssertFunction, ReturnsWhenTheConditionHolds) {
    EventRecorder recorder;
    KORXAssert(true, "%s", "never");
    EXPECT_TRUE(recorder.events.empty());
}

namespace {
// Inside the dying process: shows the published error on standard error.
class ErrorPrinter : public KORXEventListener {
public:
    void HandleEvent(KORXEvent& event) override {
        std::fprintf(stderr, "[%s|%d|%s]", event.GetName(), static_cast<int>(event.GetEventLevel()),
                     Describe(event).c_str());
    }
};
}  // namespace

TEST(AssertFunctionDeathTest, PublishesTheShiftedTextAndExitsWithStatusZero) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    // The first conversion receives the format itself, the second the first argument.
    EXPECT_EXIT(
        {
            ErrorPrinter printer;
            KORXEventBus::GetEventBus().AddListener(&printer);
            KORXAssert(false, "%s|%s", "a", "b");
        },
        testing::ExitedWithCode(0), "\\[KORXErrorEvent\\|80\\|Error : %s\\|%s\\|a\n\\]");
}
