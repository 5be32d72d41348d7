#include "system/LibInitCounter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using mx::impl::LibInitCounter;

constexpr int cThreadCount = 8;
constexpr int cCallsPerThread = 20000;

// Runs cThreadCount threads that each call `call` cCallsPerThread times, all released together,
// and returns how many of the calls answered true.
template <class Call> int countTrueAnswersFromConcurrentCalls(Call call) {
    std::atomic<int> ready{0};
    std::atomic<bool> go{false};
    std::atomic<int> trueAnswers{0};
    std::vector<std::thread> threads;
    threads.reserve(cThreadCount);
    for (int t = 0; t < cThreadCount; ++t) {
        threads.emplace_back([&] {
            ready.fetch_add(1);
            while (!go.load()) {
                std::this_thread::yield();
            }
            for (int i = 0; i < cCallsPerThread; ++i) {
                if (call()) {
                    trueAnswers.fetch_add(1);
                }
            }
        });
    }
    while (ready.load() < cThreadCount) {
        std::this_thread::yield();
    }
    go.store(true);
    for (std::thread& thread : threads) {
        thread.join();
    }
    return trueAnswers.load();
}

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

TEST(LibInitCounterTest, ConcurrentIncrementsOfAThreadSafeCounterAnswerTrueExactlyOnce) {
    LibInitCounter counter("threaded", true);
    const int trueAnswers = countTrueAnswersFromConcurrentCalls(
        [&counter] { return counter.incrementInitCounter(); });
    EXPECT_EQ(trueAnswers, 1);
    EXPECT_EQ(counter.getCount(), cThreadCount * cCallsPerThread);
}

TEST(LibInitCounterTest, ConcurrentDecrementsOfAThreadSafeCounterAnswerTrueExactlyOnce) {
    LibInitCounter counter("threaded", true);
    for (int i = 0; i < cThreadCount * cCallsPerThread; ++i) {
        counter.incrementInitCounter();
    }
    const int trueAnswers = countTrueAnswersFromConcurrentCalls(
        [&counter] { return counter.decrementInitCounter(); });
    EXPECT_EQ(trueAnswers, 1);
    EXPECT_EQ(counter.getCount(), 0);
}

} // namespace
