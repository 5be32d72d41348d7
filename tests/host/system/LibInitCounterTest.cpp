#include "system/LibInitCounter.h"

#include <gtest/gtest.h>

namespace {

using mx::impl::LibInitCounter;

TEST(LibInitCounterTest, FirstIncrementReturnsTrueAndLaterOnesFalse) {
    LibInitCounter counter("test", true);
    EXPECT_TRUE(counter.incrementInitCounter());
    EXPECT_FALSE(counter.incrementInitCounter());
    EXPECT_FALSE(counter.incrementInitCounter());
    EXPECT_EQ(counter.getCount(), 3);
}

TEST(LibInitCounterTest, DecrementBackToZeroReturnsTrue) {
    LibInitCounter counter("test", false);
    counter.incrementInitCounter();
    counter.incrementInitCounter();
    EXPECT_FALSE(counter.decrementInitCounter());
    EXPECT_TRUE(counter.decrementInitCounter());
    EXPECT_EQ(counter.getCount(), 0);
}

TEST(LibInitCounterTest, DecrementBelowZeroReturnsFalseAndStaysAtZero) {
    LibInitCounter counter("test", true);
    EXPECT_FALSE(counter.decrementInitCounter());
    EXPECT_EQ(counter.getCount(), 0);
    EXPECT_TRUE(counter.incrementInitCounter());
    EXPECT_TRUE(counter.decrementInitCounter());
    EXPECT_FALSE(counter.decrementInitCounter());
    EXPECT_EQ(counter.getCount(), 0);
}

TEST(LibInitCounterTest, KeepsItsNameAndLockingChoice) {
    LibInitCounter counter("3dmanip", true);
    EXPECT_EQ(counter.getName(), "3dmanip");
    EXPECT_TRUE(counter.isThreadSafe());
    LibInitCounter unnamed(nullptr, false);
    EXPECT_EQ(unnamed.getName(), "");
    EXPECT_FALSE(unnamed.isThreadSafe());
}

} // namespace
