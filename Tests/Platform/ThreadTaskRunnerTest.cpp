#include "SorvaneMac/Platform/ThreadTaskRunner.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

/// Work that ends only when it is asked to.
TaskRunner::Work untilStopped(std::atomic<bool>& hasBegun, TaskRunner::Deliver deliver) {
    return [&hasBegun, deliver](std::stop_token stop, const TaskRunner::Progress&) {
        hasBegun = true;
        hasBegun.notify_all();
        while (!stop.stop_requested()) {
            std::this_thread::yield();
        }
        return deliver;
    };
}

TEST(ThreadTaskRunner, WorksElsewhereAndTellsHere) {
    const std::thread::id here = std::this_thread::get_id();
    std::thread::id worker;
    std::vector<std::string> told;
    QEventLoop loop;
    ThreadTaskRunner runner;
    const auto tell = [&](const std::string& what) {
        EXPECT_EQ(std::this_thread::get_id(), here);
        told.push_back(what);
    };
    runner.start(
        [&](std::stop_token stop, const TaskRunner::Progress& progress) {
            worker = std::this_thread::get_id();
            EXPECT_FALSE(stop.stop_requested());
            progress(0.25);
            progress(0.75);
            return [&] {
                tell("done");
                loop.quit();
            };
        },
        [&](double share) { tell(share < 0.5 ? "a quarter" : "three quarters"); }, {});
    EXPECT_TRUE(told.empty());
    loop.exec();
    EXPECT_NE(worker, here);
    EXPECT_EQ(told, (std::vector<std::string>{"a quarter", "three quarters", "done"}));
}

TEST(ThreadTaskRunner, RunsTheNextWorkAfterTheOneThatWasCancelled) {
    std::vector<std::string> told;
    std::atomic<bool> hasBegun = false;
    std::stop_source cancelled;
    QEventLoop loop;
    ThreadTaskRunner runner;
    runner.start(untilStopped(hasBegun, [&told] { told.emplace_back("first"); }), {},
                 cancelled.get_token());
    hasBegun.wait(false);
    cancelled.request_stop();
    runner.start(
        [&](std::stop_token stop, const TaskRunner::Progress&) {
            EXPECT_FALSE(stop.stop_requested());
            return [&] {
                told.emplace_back("second");
                loop.quit();
            };
        },
        {}, {});
    loop.exec();
    EXPECT_EQ(told, (std::vector<std::string>{"first", "second"}));
}

TEST(ThreadTaskRunner, DropsWhatIsDeliveredAfterItsEnd) {
    int delivered = 0;
    std::atomic<bool> hasBegun = false;
    {
        ThreadTaskRunner runner;
        runner.start(untilStopped(hasBegun, [&delivered] { ++delivered; }), {}, {});
        hasBegun.wait(false);
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(delivered, 0);
}

TEST(ThreadTaskRunner, DeliversNothingWhereTheWorkGivesNothing) {
    QEventLoop loop;
    ThreadTaskRunner runner;
    int told = 0;
    runner.start(
        [](std::stop_token, const TaskRunner::Progress& progress) {
            progress(1.0);
            return TaskRunner::Deliver();
        },
        [&](double) {
            ++told;
            loop.quit();
        },
        {});
    loop.exec();
    EXPECT_EQ(told, 1);
}

}  // namespace
}  // namespace sorvane
