#pragma once

#include <atomic>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

#include "SorvaneMac/State/ProjectSnapshot.h"

namespace sorvane {

/// Writes projects to one file on a thread of its own. Of several that wait, only the last is
/// written.
///
/// A failure is silent: whoever works is not to be disturbed by a file that they never asked for.
class AutosaveWriter {
public:
    explicit AutosaveWriter(std::filesystem::path file) : file_(std::move(file)) {}
    /// Writes what waits.
    ~AutosaveWriter();
    AutosaveWriter(const AutosaveWriter&) = delete;
    AutosaveWriter& operator=(const AutosaveWriter&) = delete;

    const std::filesystem::path& file() const { return file_; }
    void write(ProjectSnapshot snapshot);
    /// Waits until all is written.
    void finish();
    /// Whether the last file could not be written, so that it is worth another try.
    bool hasFailed() const { return hasFailed_; }

private:
    void work();
    /// Whether the file was written.
    bool writeFile(const ProjectSnapshot& snapshot) const;

    std::filesystem::path file_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<ProjectSnapshot> waiting_;
    bool isWriting_ = false;
    bool isClosing_ = false;
    std::atomic<bool> hasFailed_ = false;
    std::thread thread_;
};

}  // namespace sorvane
