#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <future>
#include <system_error>
#include <thread>
#include <vector>

namespace sorvane {

/// How many threads the machine runs at once, at least 1.
inline unsigned hardwareThreads() {
    return std::max(1U, std::thread::hardware_concurrency());
}

/// Calls `work` with each index below `count`, on up to `threads` threads; each takes the next
/// index as it gets free, the caller's thread the first of all, so that it is never without a share
/// in the work. Where the system gives no more threads, those there are do it all. An exception of a
/// call is thrown on when all have ended.
template <typename Work>
void parallelFor(std::size_t count, unsigned threads, const Work& work) {
    std::atomic<std::size_t> nextIndex = 1;
    const auto runFrom = [&](std::size_t index) {
        for (; index < count; index = nextIndex++) {
            work(index);
        }
    };
    std::vector<std::future<void>> others;
    for (unsigned i = 1; i < std::min<std::size_t>(threads, count); ++i) {
        try {
            others.push_back(std::async(std::launch::async, [&] { runFrom(nextIndex++); }));
        } catch (const std::system_error&) {
            break;
        }
    }
    runFrom(0);
    for (std::future<void>& other : others) {
        other.get();
    }
}

}  // namespace sorvane
