#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace sorvane {

struct ChildProcessLimits {
    std::chrono::seconds time{60};
    /// Bytes that the process may hold in memory.
    std::size_t memory = std::size_t{2} << 30;
    /// Bytes that it may put out.
    std::size_t output = std::size_t{512} << 20;
};

struct ChildProcessResult {
    enum class End {
        /// By itself, with `exitStatus`.
        exited,
        /// There was no such program.
        notStarted,
        /// By a signal of its own making.
        crashed,
        /// Because it went beyond a limit.
        stopped,
    };
    End end = End::notStarted;
    int exitStatus = 0;
    std::string output;
};

/// Runs a program to its end, with `input` as its standard input.
///
/// Input      `command` the program's path and its arguments
/// Method     a process that goes beyond a limit is ended; its standard error is not kept
ChildProcessResult runChildProcess(const std::vector<std::string>& command,
                                   std::string_view input,
                                   const ChildProcessLimits& limits);

}  // namespace sorvane
