#include "system/mxLog.h"
#include "system/mxLogType.h"

#include "support/mxLogCapture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using mx::mxLog;
using Lines = std::vector<std::string>;

// A log of the test's own, quiet on standard error.
struct QuietLog {
    QuietLog() { log.setEchoToStandardError(false); }
    mxLog log;
};

TEST(mxLogTest, ProcessInstanceIsNotNull) { EXPECT_NE(mxLog::msInstance, nullptr); }

TEST(mxLogTest, ProcessInstanceKeepsTheLinesItIsGiven) {
    mx::test::mxLogCapture capture;
    mxLog::msInstance->write(mx::MX_LOG_WARNING, nullptr, nullptr, "process line");
    EXPECT_EQ(capture.lines(), Lines{"warning: process line"});
}

TEST(mxLogTest, NewLogEchoesAndKeepsTheDefaultNumberOfLines) {
    mxLog log;
    EXPECT_TRUE(log.isEchoingToStandardError());
    EXPECT_EQ(log.getRecentLineCapacity(), mxLog::csDefaultRecentLineCapacity);
    EXPECT_EQ(mxLog::csDefaultRecentLineCapacity, 256u);
    EXPECT_TRUE(log.getRecentLines().empty());
}

TEST(mxLogTest, FormatLineIsTypeColonMessage) {
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_WARNING, nullptr, nullptr, "text"), "warning: text");
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_ERROR, nullptr, nullptr, ""), "error: ");
}

TEST(mxLogTest, FormatLinePutsTheCategoryInBracketsBeforeTheMessage) {
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_INFO, "gizmo", nullptr, "text"),
              "info: [gizmo] text");
}

TEST(mxLogTest, FormatLinePutsTheOriginInParenthesesAfterTheMessage) {
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_WARNING, nullptr, "mxGizmo.cpp:12", "text"),
              "warning: text (mxGizmo.cpp:12)");
}

TEST(mxLogTest, FormatLineWithCategoryAndOriginHasBoth) {
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_DEBUG, "pick", "here", "hit"),
              "debug: [pick] hit (here)");
}

TEST(mxLogTest, FormatLineKeepsEmptyCategoryAndOriginWhenNotNull) {
    EXPECT_EQ(mxLog::formatLine(mx::MX_LOG_INFO, "", "", "text"), "info: [] text ()");
}

TEST(mxLogTest, WriteKeepsTheFormattedLine) {
    QuietLog quiet;
    quiet.log.write(mx::MX_LOG_NOTICE, "cat", "orig", "message");
    EXPECT_EQ(quiet.log.getRecentLines(),
              Lines{mxLog::formatLine(mx::MX_LOG_NOTICE, "cat", "orig", "message")});
    EXPECT_EQ(quiet.log.getRecentLines(), Lines{"notice: [cat] message (orig)"});
}

TEST(mxLogTest, RecentLinesAreOldestFirst) {
    QuietLog quiet;
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "one");
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "two");
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "three");
    EXPECT_EQ(quiet.log.getRecentLines(), (Lines{"info: one", "info: two", "info: three"}));
}

TEST(mxLogTest, RecentLinesAreBoundedByTheCapacityAndTheOldestAreDropped) {
    QuietLog quiet;
    quiet.log.setRecentLineCapacity(3);
    EXPECT_EQ(quiet.log.getRecentLineCapacity(), 3u);
    for (int i = 1; i <= 5; ++i) {
        quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, std::to_string(i));
    }
    EXPECT_EQ(quiet.log.getRecentLines(), (Lines{"info: 3", "info: 4", "info: 5"}));
}

TEST(mxLogTest, DefaultCapacityKeepsTheLast256Lines) {
    QuietLog quiet;
    for (int i = 0; i < 300; ++i) {
        quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, std::to_string(i));
    }
    const Lines lines = quiet.log.getRecentLines();
    ASSERT_EQ(lines.size(), 256u);
    EXPECT_EQ(lines.front(), "info: 44");
    EXPECT_EQ(lines.back(), "info: 299");
}

TEST(mxLogTest, ShrinkingTheCapacityDropsTheOldestLines) {
    QuietLog quiet;
    for (int i = 1; i <= 4; ++i) {
        quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, std::to_string(i));
    }
    quiet.log.setRecentLineCapacity(2);
    EXPECT_EQ(quiet.log.getRecentLines(), (Lines{"info: 3", "info: 4"}));
}

TEST(mxLogTest, CapacityZeroKeepsNothing) {
    QuietLog quiet;
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "before");
    quiet.log.setRecentLineCapacity(0);
    EXPECT_TRUE(quiet.log.getRecentLines().empty());
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "after");
    EXPECT_TRUE(quiet.log.getRecentLines().empty());
}

TEST(mxLogTest, GrowingTheCapacityAgainKeepsNewLines) {
    QuietLog quiet;
    quiet.log.setRecentLineCapacity(0);
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "lost");
    quiet.log.setRecentLineCapacity(2);
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "kept");
    EXPECT_EQ(quiet.log.getRecentLines(), Lines{"info: kept"});
}

TEST(mxLogTest, ClearRecentLinesForgetsEveryLineButKeepsLogging) {
    QuietLog quiet;
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "one");
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "two");
    quiet.log.clearRecentLines();
    EXPECT_TRUE(quiet.log.getRecentLines().empty());
    EXPECT_EQ(quiet.log.getRecentLineCapacity(), mxLog::csDefaultRecentLineCapacity);
    quiet.log.write(mx::MX_LOG_INFO, nullptr, nullptr, "three");
    EXPECT_EQ(quiet.log.getRecentLines(), Lines{"info: three"});
}

TEST(mxLogTest, EchoingLogWritesTheLineToStandardError) {
    mxLog log;
    testing::internal::CaptureStderr();
    log.write(mx::MX_LOG_WARNING, "cat", nullptr, "loud");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(written, "warning: [cat] loud\n");
    EXPECT_EQ(log.getRecentLines(), Lines{"warning: [cat] loud"});
}

TEST(mxLogTest, EchoSwitchedOffWritesNothingToStandardErrorButStillKeepsTheLine) {
    mxLog log;
    log.setEchoToStandardError(false);
    EXPECT_FALSE(log.isEchoingToStandardError());
    testing::internal::CaptureStderr();
    log.write(mx::MX_LOG_WARNING, nullptr, nullptr, "quiet");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_EQ(written, "");
    EXPECT_EQ(log.getRecentLines(), Lines{"warning: quiet"});
}

TEST(mxLogTest, EchoSwitchedBackOnWritesToStandardErrorAgain) {
    mxLog log;
    log.setEchoToStandardError(false);
    log.setEchoToStandardError(true);
    EXPECT_TRUE(log.isEchoingToStandardError());
    testing::internal::CaptureStderr();
    log.write(mx::MX_LOG_INFO, nullptr, nullptr, "again");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "info: again\n");
}

TEST(mxLogTest, TypeFiveIsWarning) {
    EXPECT_EQ(mx::MX_LOG_WARNING, 5);
    EXPECT_STREQ(mx::mxLogTypeName(5), "warning");
    EXPECT_EQ(mxLog::formatLine(5, nullptr, nullptr, "x"), "warning: x");
}

TEST(mxLogTest, EveryKnownTypeHasItsName) {
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_TRACE), "trace");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_DEBUG), "debug");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_INFO), "info");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_NOTICE), "notice");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_SUCCESS), "success");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_WARNING), "warning");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_ERROR), "error");
    EXPECT_STREQ(mx::mxLogTypeName(mx::MX_LOG_FATAL), "fatal");
    EXPECT_EQ(mx::MX_LOG_TRACE, 0);
    EXPECT_EQ(mx::MX_LOG_FATAL, 7);
}

TEST(mxLogTest, UnknownTypeIsNamedLog) {
    EXPECT_STREQ(mx::mxLogTypeName(-1), "log");
    EXPECT_STREQ(mx::mxLogTypeName(8), "log");
    EXPECT_STREQ(mx::mxLogTypeName(1000), "log");
    EXPECT_EQ(mxLog::formatLine(42, nullptr, nullptr, "odd"), "log: odd");
}

} // namespace
