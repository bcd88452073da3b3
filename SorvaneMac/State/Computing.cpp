#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

void StudioState::compute(Computation computation) {
    if (isComputing.get()) {
        return;
    }
    std::stop_source cancelling;
    if (computation.isCancellable) {
        miceTask_ = cancelling;
    }
    computingOwner_ = computation.owner;
    computingLabel.set(std::move(computation.label));
    computingCancellable.set(computation.isCancellable);
    computingProgress.set(std::nullopt);
    isComputing.set(true);
    const std::stop_token stop = cancelling.get_token();
    // A delivery that was under way when the run was cancelled still arrives.
    runner_->start(
        [this, stop, work = std::move(computation.work)](std::stop_token running,
                                                         const TaskRunner::Progress& progress) {
            return [this, stop, deliver = work(std::move(running), progress)] {
                if (!stop.stop_requested()) {
                    miceTask_.reset();
                    computingCancellable.set(false);
                    isComputing.set(false);
                    deliver();
                }
            };
        },
        [this, stop](double share) {
            if (!stop.stop_requested()) {
                computingProgress.set(share);
            }
        },
        stop);
}

void StudioState::cancelComputing() {
    if (!computingCancellable.get()) {
        return;
    }
    if (miceTask_) {
        miceTask_->request_stop();
        miceTask_.reset();
    }
    isComputing.set(false);
    computingCancellable.set(false);
    impMessage.set("Imputation canceled. Nothing was changed.");
}

}  // namespace sorvane
