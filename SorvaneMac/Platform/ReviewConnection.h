#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QObject>
#include <QString>

#include "SorvaneMac/Review/PairHandshake.h"

class QTcpSocket;

namespace sorvane {

/// One client of live review: waits for its handshake, then sends it the packet.
///
/// Never holds more than the handshake of what the client sends, nor more than a few pieces of the
/// packet beside the packet itself, however slowly the client reads.
class ReviewConnection final : public QObject {
public:
    using Payload = std::shared_ptr<const std::string>;

    /// Who decides; each call may end the connection.
    struct Owner {
        /// Gives the code that is valid now.
        std::function<std::optional<std::string>()> pairCode;
        /// The handshake was right; `send` or `drop` follows.
        std::function<void(ReviewConnection&)> paired;
        /// Some of the packet has left.
        std::function<void(ReviewConnection&)> progressed;
        /// It is over: with what the system said where sending broke off, absent otherwise.
        std::function<void(ReviewConnection&, const std::optional<QString>& sendError)> ended;
    };

    /// Takes the socket over, whose read buffer holds no more than a handshake.
    ReviewConnection(QTcpSocket* socket, Owner owner);

    /// Looks at what came before the socket was taken over; from here on the owner is told.
    void begin();

    void send(Payload payload);
    /// Closes at once and without a word. The owner is not told.
    void drop();

    bool isSending() const { return payload_ != nullptr; }
    /// Which start of the publisher counted this client; 0 for none.
    int countedBy = 0;

private:
    void readHandshake();
    void noteClosed();
    void pump();
    void complete();
    void retire();

    QTcpSocket* socket_;
    Owner owner_;
    PairHandshake handshake_;
    Payload payload_;
    std::size_t sent_ = 0;
};

}  // namespace sorvane
