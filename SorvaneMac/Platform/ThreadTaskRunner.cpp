#include "SorvaneMac/Platform/ThreadTaskRunner.h"

#include <thread>
#include <utility>

#include <QMetaObject>
#include <QObject>

namespace sorvane {

struct ThreadTaskRunner::Inside {
    /// Stands on the owner's thread; a delivery queued for it dies with it.
    QObject owner;
    std::stop_source closing;
    std::jthread thread;
};

ThreadTaskRunner::ThreadTaskRunner() : inside_(std::make_unique<Inside>()) {}

ThreadTaskRunner::~ThreadTaskRunner() {
    inside_->closing.request_stop();
}

void ThreadTaskRunner::start(Work work, Progress progress, std::stop_token stop) {
    // Joins the former run, of which only a cancelled one can still be under way, before the next
    // one begins.
    inside_->thread = std::jthread();
    inside_->thread = std::jthread([inside = inside_.get(), work = std::move(work),
                                    progress = std::move(progress), stop = std::move(stop)] {
        std::stop_source either;
        const std::stop_callback cancelled(stop, [&either] { either.request_stop(); });
        const std::stop_callback closed(inside->closing.get_token(),
                                        [&either] { either.request_stop(); });
        const auto onOwnersThread = [inside](Deliver call) {
            QMetaObject::invokeMethod(&inside->owner, std::move(call), Qt::QueuedConnection);
        };
        const Deliver deliver =
            work(either.get_token(), [&onOwnersThread, &progress](double share) {
                onOwnersThread([progress, share] { progress(share); });
            });
        if (deliver) {
            onOwnersThread(deliver);
        }
    });
}

}  // namespace sorvane
