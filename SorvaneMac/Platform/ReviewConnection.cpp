#include "SorvaneMac/Platform/ReviewConnection.h"

#include <algorithm>
#include <array>
#include <sys/socket.h>

#include <QTcpSocket>

namespace sorvane {

namespace {

constexpr qint64 pieceSize = 64 * 1024;
/// What may wait in the socket before the next piece is given to it.
constexpr qint64 mostWaiting = 256 * 1024;

/// Takes what a client sent beyond its handshake: a socket that is closed over unread bytes resets
/// the connection, and the client may lose the end of the packet.
void discardUnread(qintptr descriptor) {
    constexpr int mostReads = 64;
    std::array<char, 4096> unread{};
    for (int reads = 0; reads < mostReads; ++reads) {
        if (::recv(static_cast<int>(descriptor), unread.data(), unread.size(), MSG_DONTWAIT) <= 0) {
            return;
        }
    }
}

}  // namespace

ReviewConnection::ReviewConnection(QTcpSocket* socket, Owner owner)
    : socket_(socket), owner_(std::move(owner)) {
    socket_->setParent(this);
    connect(socket_, &QTcpSocket::readyRead, this, [this] { readHandshake(); });
    connect(socket_, &QTcpSocket::disconnected, this, [this] { noteClosed(); });
    connect(socket_, &QTcpSocket::bytesWritten, this, [this] { pump(); });
}

void ReviewConnection::begin() {
    if (socket_->state() == QAbstractSocket::ConnectedState) {
        readHandshake();
    } else {
        noteClosed();
    }
}

void ReviewConnection::readHandshake() {
    if (isSending()) {
        return;
    }
    std::array<char, PairHandshake::length> seen{};
    const qint64 count = std::max<qint64>(0, socket_->peek(seen.data(), seen.size()));
    const std::size_t known = PairHandshake::length - handshake_.missing();
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(seen.data());
    const std::span<const std::uint8_t> all(bytes, static_cast<std::size_t>(count));
    switch (handshake_.take(all.subspan(std::min(known, all.size())), owner_.pairCode())) {
        case PairHandshake::Verdict::waiting:
            break;
        case PairHandshake::Verdict::refused:
            drop();
            owner_.ended(*this, std::nullopt);
            break;
        case PairHandshake::Verdict::accepted:
            owner_.paired(*this);
            break;
    }
}

void ReviewConnection::send(Payload payload) {
    payload_ = std::move(payload);
    const auto prefix = ReviewWire::lengthPrefix(payload_->size());
    if (!prefix) {
        drop();
        owner_.ended(*this, QString("The packet is larger than 4 GB"));
        return;
    }
    socket_->write(reinterpret_cast<const char*>(prefix->data()),
                   static_cast<qint64>(prefix->size()));
    pump();
}

void ReviewConnection::pump() {
    if (!isSending()) {
        return;
    }
    owner_.progressed(*this);
    while (sent_ < payload_->size() && socket_->bytesToWrite() < mostWaiting) {
        const qint64 size = std::min(pieceSize, static_cast<qint64>(payload_->size() - sent_));
        if (socket_->write(payload_->data() + sent_, size) != size) {
            return;
        }
        sent_ += static_cast<std::size_t>(size);
    }
    if (sent_ == payload_->size() && socket_->bytesToWrite() == 0) {
        complete();
    }
}

void ReviewConnection::complete() {
    discardUnread(socket_->socketDescriptor());
    retire();
    socket_->disconnectFromHost();
    owner_.ended(*this, std::nullopt);
}

void ReviewConnection::noteClosed() {
    const std::optional<QString> sendError =
        isSending() ? std::optional(socket_->errorString()) : std::nullopt;
    retire();
    owner_.ended(*this, sendError);
}

void ReviewConnection::drop() {
    retire();
    socket_->abort();
}

void ReviewConnection::retire() {
    socket_->disconnect(this);
    deleteLater();
}

}  // namespace sorvane
