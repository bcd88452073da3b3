#pragma once

#include <atomic>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "SorvaneCore/Numerics/ParallelFor.h"

/// The EM algorithm for mixtures from several starts.
///
/// A mixture has a type `Parameters` and a function `step` that takes parameters to a `Step`.
namespace sorvane::ExpectationMaximization {

/// One round: the log likelihood at the parameters it began with, and those it leads to.
template <typename Parameters>
struct Step {
    double logLikelihood = 0.0;
    Parameters next{};
};

/// Where a start ended.
template <typename Parameters>
struct Run {
    Parameters parameters{};
    /// Those of the round before, at which the log likelihood and the posteriors are taken.
    Parameters expected{};
    double logLikelihood = -std::numeric_limits<double>::infinity();
    std::int64_t iterations = 0;
    bool converged = false;
};

/// Rounds until the log likelihood moves by less than the tolerance times itself.
template <typename Mixture>
Run<typename Mixture::Parameters> fromStart(const Mixture& mixture,
                                            typename Mixture::Parameters start,
                                            std::int64_t maxIterations,
                                            double tolerance = 1e-8) {
    Run<typename Mixture::Parameters> run{.parameters = std::move(start)};
    while (!run.converged && run.iterations < maxIterations) {
        auto step = mixture.step(run.parameters);
        run.converged = std::abs(step.logLikelihood - run.logLikelihood) <
                        (std::abs(step.logLikelihood) + 1.0) * tolerance;
        run.logLikelihood = step.logLikelihood;
        run.expected = std::exchange(run.parameters, std::move(step.next));
        ++run.iterations;
    }
    return run;
}

/// The run of highest log likelihood, the first of equals; absent when none is finite. The runs
/// share the threads, and none depends on another. The share of them that have ended is told on the
/// calling thread.
template <typename Mixture>
std::optional<Run<typename Mixture::Parameters>> best(
    const Mixture& mixture,
    const std::vector<typename Mixture::Parameters>& starts,
    std::int64_t maxIterations,
    const std::function<void(double)>& progress) {
    std::vector<Run<typename Mixture::Parameters>> runs(starts.size());
    const std::thread::id caller = std::this_thread::get_id();
    std::atomic<std::size_t> ended = 0;
    parallelFor(starts.size(), hardwareThreads(), [&](std::size_t start) {
        runs[start] = fromStart(mixture, starts[start], maxIterations);
        const std::size_t count = ++ended;
        if (progress && std::this_thread::get_id() == caller) {
            progress(static_cast<double>(count) / static_cast<double>(starts.size()));
        }
    });
    std::optional<Run<typename Mixture::Parameters>> result;
    for (auto& run : runs) {
        if (std::isfinite(run.logLikelihood) &&
            (!result || run.logLikelihood > result->logLikelihood)) {
            result = std::move(run);
        }
    }
    return result;
}

}  // namespace sorvane::ExpectationMaximization
