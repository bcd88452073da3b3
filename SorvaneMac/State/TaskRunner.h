#pragma once

#include <functional>
#include <stop_token>

namespace sorvane {

/// Where long computations run: the edge between the workspace and the threads of its host.
///
/// The work gets a stop token to poll and must touch nothing but its own copies; what it returns
/// is called on the workspace's thread, as is `progress`. One such run stands at a time.
class TaskRunner {
public:
    using Deliver = std::function<void()>;
    /// Takes the share of the work that is done, from 0 to 1.
    using Progress = std::function<void(double)>;
    using Work = std::function<Deliver(std::stop_token, const Progress&)>;

    virtual ~TaskRunner() = default;
    virtual void start(Work work, Progress progress, std::stop_token stop) = 0;
};

/// Runs the work at once on the calling thread; for scripts and tests.
class ImmediateTaskRunner final : public TaskRunner {
public:
    void start(Work work, Progress progress, std::stop_token stop) override {
        if (const Deliver deliver = work(std::move(stop), progress)) {
            deliver();
        }
    }
};

}  // namespace sorvane
