#include "system/mxLogObject.h"

#include "support/mxLogCapture.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using mx::mxLog;
using mx::mxLogObject;
using Lines = std::vector<std::string>;

TEST(mxLogObjectTest, LineIsWrittenWhenTheObjectIsDestroyedAndNotBefore) {
    mx::test::mxLogCapture capture;
    {
        mxLogObject object(mx::MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true);
        object << "pending";
        EXPECT_TRUE(capture.lines().empty());
        EXPECT_EQ(object.getMessage(), "pending");
        object << " still";
        EXPECT_TRUE(capture.lines().empty());
    }
    EXPECT_EQ(capture.lines(), Lines{"info: pending still"});
}

TEST(mxLogObjectTest, WarningStreamedIntoATemporaryIsOneWarningLine) {
    mx::test::mxLogCapture capture;
    mx::mxLogObject(5, nullptr, mx::mxLog::msInstance, nullptr, true)
        << "The gizmo must have an RS matrix (x)";
    EXPECT_EQ(capture.lines(), Lines{"warning: The gizmo must have an RS matrix (x)"});
}

TEST(mxLogObjectTest, CategoryAndOriginAppearInTheLine) {
    mx::test::mxLogCapture capture;
    mxLogObject(mx::MX_LOG_ERROR, "gizmo", mxLog::msInstance, "mxGizmo.cpp:7", true) << "bad";
    EXPECT_EQ(capture.lines(), Lines{"error: [gizmo] bad (mxGizmo.cpp:7)"});
}

TEST(mxLogObjectTest, LineGoesToTheLogItWasGiven) {
    mx::test::mxLogCapture capture;
    mxLog own;
    own.setEchoToStandardError(false);
    mxLogObject(mx::MX_LOG_INFO, nullptr, &own, nullptr, true) << "private";
    EXPECT_EQ(own.getRecentLines(), Lines{"info: private"});
    EXPECT_TRUE(capture.lines().empty());
}

TEST(mxLogObjectTest, EachObjectWritesOneLine) {
    mx::test::mxLogCapture capture;
    mxLogObject(mx::MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true) << "first";
    mxLogObject(mx::MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true) << "second";
    EXPECT_EQ(capture.lines(), (Lines{"info: first", "info: second"}));
}

TEST(mxLogObjectTest, ObjectWithNothingStreamedWritesAnEmptyMessage) {
    mx::test::mxLogCapture capture;
    { mxLogObject object(mx::MX_LOG_NOTICE, nullptr, mxLog::msInstance, nullptr, true); }
    EXPECT_EQ(capture.lines(), Lines{"notice: "});
}

TEST(mxLogObjectTest, DisabledObjectWritesNothing) {
    mx::test::mxLogCapture capture;
    mxLogObject(mx::MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, false) << "hidden";
    EXPECT_TRUE(capture.lines().empty());
}

TEST(mxLogObjectTest, DisabledObjectStillCollectsTheMessage) {
    mxLogObject object(mx::MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, false);
    object << "hidden " << 3;
    EXPECT_EQ(object.getMessage(), "hidden 3");
}

TEST(mxLogObjectTest, NullLogWritesNothing) {
    mx::test::mxLogCapture capture;
    mxLogObject(mx::MX_LOG_WARNING, nullptr, nullptr, nullptr, true) << "nowhere";
    EXPECT_TRUE(capture.lines().empty());
}

TEST(mxLogObjectTest, NullTextAppendsNothing) {
    mx::test::mxLogCapture capture;
    const char* nothing = nullptr;
    {
        mxLogObject object(mx::MX_LOG_INFO, nullptr, mxLog::msInstance, nullptr, true);
        object << "a" << nothing << "b";
        EXPECT_EQ(object.getMessage(), "ab");
    }
    EXPECT_EQ(capture.lines(), Lines{"info: ab"});
}

TEST(mxLogObjectTest, IntegersStreamInDecimal) {
    mxLogObject object(mx::MX_LOG_INFO, nullptr, nullptr, nullptr, true);
    object << -3 << ' ' << 7u << ' ' << -40L << ' ' << 50UL << ' ' << -6000000000LL << ' '
           << 18000000000000000000ULL;
    EXPECT_EQ(object.getMessage(), "-3 7 -40 50 -6000000000 18000000000000000000");
}

TEST(mxLogObjectTest, FloatingPointNumbersStreamAsAnOutputStreamPrintsThem) {
    mxLogObject object(mx::MX_LOG_INFO, nullptr, nullptr, nullptr, true);
    object << 2.5 << ' ' << 0.25f << ' ' << -1.0;
    EXPECT_EQ(object.getMessage(), "2.5 0.25 -1");
}

TEST(mxLogObjectTest, BoolsStreamAsTrueAndFalse) {
    mxLogObject object(mx::MX_LOG_INFO, nullptr, nullptr, nullptr, true);
    object << true << ' ' << false;
    EXPECT_EQ(object.getMessage(), "true false");
}

TEST(mxLogObjectTest, CharsAndStringsStreamAsText) {
    mxLogObject object(mx::MX_LOG_INFO, nullptr, nullptr, nullptr, true);
    object << 'x' << std::string(" and ") << "y";
    EXPECT_EQ(object.getMessage(), "x and y");
}

TEST(mxLogObjectTest, PointersStreamAsAnOutputStreamPrintsThem) {
    int value = 0;
    const void* pointer = &value;
    std::ostringstream expected;
    expected << pointer;
    mxLogObject object(mx::MX_LOG_INFO, nullptr, nullptr, nullptr, true);
    object << pointer;
    EXPECT_EQ(object.getMessage(), expected.str());
}

TEST(mxLogObjectTest, MixedValuesStreamIntoOneLine) {
    mx::test::mxLogCapture capture;
    mxLogObject(mx::MX_LOG_WARNING, nullptr, mxLog::msInstance, nullptr, true)
        << "axis " << 2 << " visible " << false << " scale " << 1.5;
    EXPECT_EQ(capture.lines(), Lines{"warning: axis 2 visible false scale 1.5"});
}

} // namespace
