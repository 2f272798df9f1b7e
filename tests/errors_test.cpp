#include <korx/KORXError.h>

#include <gtest/gtest.h>

#include <string>

#include "support/event_recorder.h"

namespace {

std::string DescriptionOf(const KORXError& error) {
    CaptureStream out;
    error.GetFormattedDescription(&out);
    return out.text;
}

KORXError ErrorWith(long code, const char* description) {
    KORXError error(code);
    KORXString text(description);
    error.SetDescription(text);
    return error;
}

// A tracker for the test's duration; the process is left without one, as it was found.
class ErrorTracking : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(KORXErrorTracker::GetInstance(), nullptr);
        KORXErrorTracker::Initialize();
    }
    void TearDown() override { delete KORXErrorTracker::GetInstance(); }
};

}  // namespace

TEST(ErrorDescription, CodeZeroPrintsNothingOtherwiseCodeAndDescription) {
    EXPECT_EQ(DescriptionOf(ErrorWith(0, "ignored")), "");
    EXPECT_EQ(DescriptionOf(KORXError(42)), "Error 42\n");
    EXPECT_EQ(DescriptionOf(ErrorWith(-7, "bad face")), "Error -7 : bad face\n");
}

TEST(ErrorDescription, EventsDescribeTheirMessageOrTheirError) {
    KORXError error = ErrorWith(12, "open shell");
    EXPECT_EQ(Describe(KORXErrorEvent(error)), "Error 12 : open shell\n");
    EXPECT_EQ(Describe(KORXErrorEvent("face %d", 3)), "Error : face 3\n");
    // No message: the shared default record, code 0, prints nothing.
    EXPECT_EQ(Describe(KORXErrorEvent("%s", "")), "");
    EXPECT_EQ(&KORXErrorEvent("x").GetError(), &KORXError::GetDefaultError());
}

TEST(ErrorTrackerAbsent, CountsNothing) {
    ASSERT_EQ(KORXErrorTracker::GetInstance(), nullptr);
    KORXError::Printf("unseen");
    EXPECT_EQ(KORXError::GetErrorCount(), 0);
    EXPECT_EQ(KORXError::GetLastError(), nullptr);
    EXPECT_EQ(static_cast<long>(KORXErrorTracker::Reset()), 0);
}

TEST_F(ErrorTracking, KeepsACopyOfEveryErrorInArrivalOrder) {
    KORXError error = ErrorWith(31, "gap");
    EXPECT_EQ(static_cast<long>(KORXErrorEvent::Fire(error, "f", 12)), 31);
    EXPECT_EQ(error.GetLine(), 12);  // stored in the caller's record before sending
    KORXError::Printf("by format %d", 1);
    KORXEvent other("KORXAssertEvent", KORX_LEVEL_ERROR);
    KORXEventBus::Fire(other);  // not an error: not kept

    ASSERT_EQ(KORXError::GetErrorCount(), 2);
    KORXErrorTracker* tracker = KORXErrorTracker::GetInstance();
    const KORXError* first = tracker->GetError(0);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(first, &error);
    EXPECT_EQ(first->GetCode(), 31);
    EXPECT_EQ(first->GetLine(), 12);
    EXPECT_STREQ(static_cast<const char*>(first->GetSourceFile()), "f");
    EXPECT_EQ(KORXError::GetLastError()->GetCode(), 0);  // errors by format carry the default
    EXPECT_EQ(tracker->GetError(-1), nullptr);
    EXPECT_EQ(tracker->GetError(2), nullptr);
}

TEST_F(ErrorTracking, InitializeTwiceKeepsOneTrackerAndResetEmptiesIt) {
    KORXErrorTracker* tracker = KORXErrorTracker::GetInstance();
    KORXErrorTracker::Initialize();
    EXPECT_EQ(KORXErrorTracker::GetInstance(), tracker);
    KORXError::Printf("once");
    EXPECT_EQ(KORXError::GetErrorCount(), 1);  // registered once, so counted once
    KORXErrorTracker::Reset();
    EXPECT_EQ(KORXError::GetErrorCount(), 0);
    EXPECT_EQ(tracker->GetLastError(), nullptr);
    KORXError::Printf("again");
    EXPECT_EQ(KORXError::GetErrorCount(), 1);
}

TEST_F(ErrorTracking, DestroyingTheTrackerLeavesTheBus) {
    delete KORXErrorTracker::GetInstance();
    EXPECT_EQ(KORXErrorTracker::GetInstance(), nullptr);
    KORXError::Printf("after");  // would reach a destroyed listener if it had stayed
    EXPECT_EQ(KORXError::GetErrorCount(), 0);
}
