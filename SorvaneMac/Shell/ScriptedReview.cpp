#include "SorvaneMac/Shell/ScriptedReview.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include "SorvaneMac/Platform/ReviewLivePublisher.h"

namespace sorvane {

LiveReviewOutcome offerLiveReview(StudioState& state, const LiveReviewRequest& request) {
    constexpr double millisecondsInSecond = 1000.0;
    BriselReviewLivePublisher publisher({.port = request.port});
    if (!presentOnIPad(state, publisher)) {
        return {.failure = state.saveStatusMessage.get()};
    }
    if (!publisher.isPublishing()) {
        return {.failure = publisher.failure()};
    }
    request.began(*publisher.pairCode(), publisher.port());
    QTimer time;
    time.setSingleShot(true);
    time.start(static_cast<int>(request.seconds * millisecondsInSecond));
    const auto served = [&publisher] {
        return publisher.connectedClients() - publisher.clientsBeingServed();
    };
    while (publisher.isPublishing() && time.isActive() && served() < request.clients) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return {.clients = served(), .failure = publisher.failure()};
}

}  // namespace sorvane
