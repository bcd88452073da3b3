#include <atomic>
#include <thread>

#include <QTest>

#include <gtest/gtest.h>

#include "SorvaneMac/Platform/ThreadTaskRunner.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

/// A workspace whose long runs have a thread of their own.
class BackgroundRunTest : public testing::Test {
protected:
    /// Starts a run that tells its progress, waits until it may end, and then stores.
    void start(bool isCancellable) {
        state_.compute({.label = "Counting…",
                        .work =
                            [this](std::stop_token stop, const TaskRunner::Progress& progress) {
                                const std::thread::id worker = std::this_thread::get_id();
                                progress(0.5);
                                while (!mayEnd_ && !stop.stop_requested()) {
                                    std::this_thread::yield();
                                }
                                return [this, worker] {
                                    wasElsewhere_ = worker != std::this_thread::get_id();
                                    ++stored_;
                                };
                            },
                        .isCancellable = isCancellable});
    }

    std::atomic<bool> mayEnd_ = false;
    bool wasElsewhere_ = false;
    int stored_ = 0;
    /// Last, so that its thread ends before what it uses.
    StudioState state_{"", std::make_unique<ThreadTaskRunner>()};
};

TEST_F(BackgroundRunTest, TellsItsProgressAndStoresOnTheWindowsThread) {
    start(false);
    EXPECT_EQ(state_.computingLabel.get(), "Counting…");
    EXPECT_TRUE(QTest::qWaitFor([this] { return state_.computingProgress.get() == 0.5; }));
    start(false);
    state_.cancelComputing();
    EXPECT_TRUE(state_.isComputing.get()) << "it cannot be cancelled";
    mayEnd_ = true;
    EXPECT_TRUE(QTest::qWaitFor([this] { return !state_.isComputing.get(); }));
    EXPECT_TRUE(wasElsewhere_);
    EXPECT_EQ(stored_, 1) << "one run stands at a time";
}

TEST_F(BackgroundRunTest, ACancelledRunStoresNothing) {
    start(true);
    state_.cancelComputing();
    EXPECT_FALSE(state_.isComputing.get());
    EXPECT_EQ(state_.impMessage.get(), "Imputation canceled. Nothing was changed.");
    mayEnd_ = true;
    start(false);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !state_.isComputing.get(); }));
    EXPECT_EQ(stored_, 1) << "only the second run stores";
}

}  // namespace
}  // namespace sorvane
