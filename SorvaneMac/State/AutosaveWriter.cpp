#include "SorvaneMac/State/AutosaveWriter.h"

#include <system_error>
#include <utility>

#include "SorvaneCore/Project/WholeFile.h"

namespace sorvane {

AutosaveWriter::~AutosaveWriter() {
    {
        const std::lock_guard lock(mutex_);
        isClosing_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void AutosaveWriter::write(ProjectSnapshot snapshot) {
    {
        const std::lock_guard lock(mutex_);
        waiting_ = std::move(snapshot);
    }
    changed_.notify_all();
    if (thread_.joinable()) {
        return;
    }
    try {
        thread_ = std::thread([this] { work(); });
    } catch (const std::system_error&) {
        // No thread is to be had; the next autosave may get one.
        waiting_.reset();
        hasFailed_ = true;
    }
}

void AutosaveWriter::finish() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !waiting_ && !isWriting_; });
}

void AutosaveWriter::work() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return waiting_ || isClosing_; });
        if (!waiting_) {
            return;
        }
        {
            const ProjectSnapshot snapshot = *std::exchange(waiting_, std::nullopt);
            isWriting_ = true;
            lock.unlock();
            hasFailed_ = !writeFile(snapshot);
        }
        lock.lock();
        isWriting_ = false;
        changed_.notify_all();
    }
}

bool AutosaveWriter::writeFile(const ProjectSnapshot& snapshot) const {
    std::error_code failure;
    std::filesystem::create_directories(file_.parent_path(), failure);
    try {
        const ProjectArchive archive = snapshot.archive();
        return !replaceFile(
            file_, [&archive](const TakeBytes& take) { ProjectArchive::encode(archive, take); });
    } catch (const std::exception&) {
        // The former autosave stands.
        return false;
    }
}

}  // namespace sorvane
