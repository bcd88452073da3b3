#pragma once

#include <memory>

#include "SorvaneMac/State/TaskRunner.h"

namespace sorvane {

/// Runs the work on a thread of its own and delivers on the thread that made the runner.
///
/// Destroying it asks the work to stop and waits for it; what the work then returns is dropped.
class ThreadTaskRunner final : public TaskRunner {
public:
    ThreadTaskRunner();
    ~ThreadTaskRunner() override;

    void start(Work work, Progress progress, std::stop_token stop) override;

private:
    struct Inside;
    std::unique_ptr<Inside> inside_;
};

}  // namespace sorvane
