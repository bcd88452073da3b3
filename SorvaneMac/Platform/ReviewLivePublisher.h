#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "SorvaneMac/Review/PairHandshake.h"
#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Offers a packet to the tablet viewer over the local network: listens while publishing, announces
/// itself, and gives the packet to whoever sends the code that is shown.
///
/// A snapshot is given, once to each client. Clients that wait are bounded in number, the oldest is
/// dropped first; so are those being served, the one longest without progress first. Confined to
/// the thread of the window, and never waits.
class BriselReviewLivePublisher {
public:
    struct Options {
        /// 0 for any that is free; for tests.
        std::uint16_t port = ReviewWire::port;
        std::size_t mostWaiting = 256;
        std::size_t mostServed = 16;
    };

    BriselReviewLivePublisher() : BriselReviewLivePublisher(Options{}) {}
    explicit BriselReviewLivePublisher(const Options& options);
    ~BriselReviewLivePublisher();

    /// Begins anew, with another code, offering these bytes.
    void startPublishing(std::optional<std::string> initial);
    /// Ends it and frees the port. A transfer that is under way goes on.
    void stopPublishing();
    /// Offers other bytes from now on; a running publisher stays as it is.
    void setLatestPayload(std::string payload);

    /// The host's name without ".local"; "this Mac" where it has none.
    static std::string defaultHostName();

    /// Four digits while publishing.
    const std::optional<std::string>& pairCode() const;
    bool isPublishing() const;
    /// The clients that passed the check since the start, less those of them whose connection
    /// failed. Clients that never passed do not count, however their connection ends.
    int connectedClients() const;
    /// Those to whom the packet is still on its way.
    int clientsBeingServed() const;
    const std::string& macHostName() const;
    /// The address under which the local network knows this machine; the host's name without one.
    std::string address() const;
    /// The port listened on; that of the options while nothing is published.
    std::uint16_t port() const;
    /// Why publishing could not begin or broke off; absent otherwise.
    const std::optional<std::string>& failure() const;
    /// Why the network is not told of the service; absent while nothing is wrong.
    std::optional<std::string> announcementProblem() const;

    /// Calls the observer after each change of what is told above.
    [[nodiscard]] Subscription observe(std::function<void()> observer);

private:
    struct Inside;
    std::unique_ptr<Inside> inside_;
};

/// Builds the packet with a preview, and publishes it. Says in `saveStatusMessage` when there is
/// nothing to present or it cannot be built.
///
/// Returns    whether publishing was asked for; whether it began, the publisher tells
bool presentOnIPad(StudioState& state, BriselReviewLivePublisher& publisher);

/// Builds the packet anew, for clients from now on; where it cannot be built the old one stays.
///
/// Returns    whether it could be built
bool publishLive(const StudioState& state, BriselReviewLivePublisher& publisher);

}  // namespace sorvane
