#include "SorvaneMac/Platform/ReviewLivePublisher.h"

#include <algorithm>
#include <list>
#include <utility>
#include <vector>

#include <QLoggingCategory>
#include <QNetworkInterface>
#include <QRandomGenerator>
#include <QSysInfo>
#include <QTcpServer>
#include <QTcpSocket>

#include "SorvaneMac/Platform/ReviewConnection.h"
#include "SorvaneMac/Platform/ServiceAdvertiser.h"
#include "SorvaneMac/Review/ReviewBundleExporter.h"
#include "SorvaneMac/Review/ReviewWording.h"

namespace sorvane {

namespace {

Q_LOGGING_CATEGORY(logger, "sorvane.review")

constexpr auto serviceType = "_brisel-review._tcp";
constexpr auto namelessService = "Brisel";
constexpr auto namelessHost = "this Mac";
constexpr QLatin1String localSuffix(".local");
/// Taken in one turn of the event loop, so that a crowd cannot keep the window from its own.
constexpr int mostAcceptedAtOnce = 32;
constexpr int backlog = 256;

/// Empty where the host has none.
QString hostName() {
    QString name = QSysInfo::machineHostName();
    if (name.endsWith(localSuffix)) {
        name.chop(localSuffix.size());
    }
    return name;
}

std::string newPairCode() {
    return ReviewWire::pairCode(QRandomGenerator::system()->bounded(ReviewWire::pairCodes));
}

}  // namespace

/// Its sockets read no more than a handshake from the start. That stays in their buffers, which
/// keeps them from reading on: a client that closes its own side after it would else count as gone.
class HandshakeServer final : public QTcpServer {
protected:
    void incomingConnection(qintptr descriptor) override {
        auto* socket = new QTcpSocket(this);
        socket->setReadBufferSize(PairHandshake::length);
        socket->setSocketDescriptor(descriptor);
        addPendingConnection(socket);
    }
};

/// Connections are children of the server's owner and stand in one of the two lists.
struct BriselReviewLivePublisher::Inside {
    explicit Inside(const Options& wanted) : options(wanted) {
        server.setMaxPendingConnections(mostAcceptedAtOnce);
        server.setListenBacklogSize(backlog);
        QObject::connect(&server, &QTcpServer::newConnection, &owner, [this] { scheduleTaking(); });
        QObject::connect(&server, &QTcpServer::acceptError, &owner, [this] { failListening(); });
    }

    void start(std::optional<std::string> initial);
    void stop();
    void failListening();
    void scheduleTaking();
    void takePending();
    void addWaiting(QTcpSocket* socket);
    void serve(ReviewConnection& connection);
    void noteProgress(ReviewConnection& connection);
    void forget(ReviewConnection& connection, const std::optional<QString>& sendError);
    void tell();

    const Options options;
    std::optional<std::string> pairCode;
    bool isPublishing = false;
    int connectedClients = 0;
    std::string macHostName = defaultHostName();
    std::optional<std::string> failure;
    ReviewConnection::Payload latestPayload;
    int starts = 0;
    bool isTakingScheduled = false;
    std::vector<std::weak_ptr<std::function<void()>>> observers;
    ServiceAdvertiser netService{[this] {
        tell();
    }};
    /// The oldest first.
    std::list<ReviewConnection*> waiting;
    /// The one longest without progress first.
    std::list<ReviewConnection*> served;
    HandshakeServer server;
    /// Last, so that connections and queued calls go before what they use.
    QObject owner;
};

void BriselReviewLivePublisher::Inside::start(std::optional<std::string> initial) {
    stop();
    latestPayload = initial ? std::make_shared<const std::string>(*std::move(initial)) : nullptr;
    macHostName = defaultHostName();
    failure.reset();
    if (!server.listen(QHostAddress::Any, options.port)) {
        const QString why = server.errorString();
        qCWarning(logger, "Could not start listener: %s", qUtf8Printable(why));
        failure = ReviewWording::notListening(why.toStdString());
        tell();
        return;
    }
    ++starts;
    pairCode = newPairCode();
    isPublishing = true;
    const QString host = hostName();
    netService.publish({.name = host.isEmpty() ? QString(namelessService) : host,
                        .type = serviceType,
                        .port = server.serverPort()});
    tell();
}

void BriselReviewLivePublisher::Inside::stop() {
    netService.withdraw();
    server.close();
    pairCode.reset();
    isPublishing = false;
    connectedClients = 0;
    tell();
}

void BriselReviewLivePublisher::Inside::failListening() {
    const QString why = server.errorString();
    qCWarning(logger, "Listener failed: %s", qUtf8Printable(why));
    stop();
    failure = ReviewWording::notListening(why.toStdString());
    tell();
}

void BriselReviewLivePublisher::Inside::scheduleTaking() {
    if (!std::exchange(isTakingScheduled, true)) {
        QMetaObject::invokeMethod(
            &owner, [this] { takePending(); }, Qt::QueuedConnection);
    }
}

void BriselReviewLivePublisher::Inside::takePending() {
    isTakingScheduled = false;
    for (int taken = 0; taken < mostAcceptedAtOnce && server.hasPendingConnections(); ++taken) {
        addWaiting(server.nextPendingConnection());
    }
    if (server.hasPendingConnections()) {
        scheduleTaking();
    }
}

void BriselReviewLivePublisher::Inside::addWaiting(QTcpSocket* socket) {
    auto* connection = new ReviewConnection(
        socket, {.pairCode = [this] { return pairCode; },
                 .paired = [this](ReviewConnection& each) { serve(each); },
                 .progressed = [this](ReviewConnection& each) { noteProgress(each); },
                 .ended =
                     [this](ReviewConnection& each, const std::optional<QString>& sendError) {
                         forget(each, sendError);
                     }});
    connection->setParent(&owner);
    waiting.push_back(connection);
    if (waiting.size() > options.mostWaiting) {
        waiting.front()->drop();
        waiting.pop_front();
    }
    connection->begin();
}

void BriselReviewLivePublisher::Inside::serve(ReviewConnection& connection) {
    waiting.remove(&connection);
    connection.countedBy = starts;
    ++connectedClients;
    if (!latestPayload) {
        connection.drop();
    } else {
        served.push_back(&connection);
        if (served.size() > options.mostServed) {
            served.front()->drop();
            served.pop_front();
        }
        connection.send(latestPayload);
    }
    tell();
}

void BriselReviewLivePublisher::Inside::noteProgress(ReviewConnection& connection) {
    const auto at = std::ranges::find(served, &connection);
    if (at != served.end()) {
        served.splice(served.end(), served, at);
    }
}

void BriselReviewLivePublisher::Inside::forget(ReviewConnection& connection,
                                               const std::optional<QString>& sendError) {
    waiting.remove(&connection);
    served.remove(&connection);
    if (!sendError) {
        return;
    }
    qCWarning(logger, "Send failed: %s", qUtf8Printable(*sendError));
    if (isPublishing && connection.countedBy == starts) {
        connectedClients = std::max(0, connectedClients - 1);
        tell();
    }
}

void BriselReviewLivePublisher::Inside::tell() {
    std::erase_if(observers, [](const auto& each) { return each.expired(); });
    const auto told = observers;
    for (const auto& each : told) {
        if (const auto held = each.lock()) {
            (*held)();
        }
    }
}

BriselReviewLivePublisher::BriselReviewLivePublisher(const Options& options)
    : inside_(std::make_unique<Inside>(options)) {}

BriselReviewLivePublisher::~BriselReviewLivePublisher() {
    inside_->observers.clear();
}

void BriselReviewLivePublisher::startPublishing(std::optional<std::string> initial) {
    inside_->start(std::move(initial));
}

void BriselReviewLivePublisher::stopPublishing() {
    inside_->failure.reset();
    inside_->stop();
}

void BriselReviewLivePublisher::setLatestPayload(std::string payload) {
    inside_->latestPayload = std::make_shared<const std::string>(std::move(payload));
}

std::string BriselReviewLivePublisher::defaultHostName() {
    const QString name = hostName();
    return name.isEmpty() ? namelessHost : name.toStdString();
}

const std::optional<std::string>& BriselReviewLivePublisher::pairCode() const {
    return inside_->pairCode;
}

bool BriselReviewLivePublisher::isPublishing() const {
    return inside_->isPublishing;
}

int BriselReviewLivePublisher::connectedClients() const {
    return inside_->connectedClients;
}

int BriselReviewLivePublisher::clientsBeingServed() const {
    return static_cast<int>(inside_->served.size());
}

const std::string& BriselReviewLivePublisher::macHostName() const {
    return inside_->macHostName;
}

std::string BriselReviewLivePublisher::address() const {
    for (const QHostAddress& each : QNetworkInterface::allAddresses()) {
        if (!each.isLoopback() && each.protocol() == QAbstractSocket::IPv4Protocol) {
            return each.toString().toStdString();
        }
    }
    return macHostName();
}

std::uint16_t BriselReviewLivePublisher::port() const {
    return isPublishing() ? inside_->server.serverPort() : inside_->options.port;
}

const std::optional<std::string>& BriselReviewLivePublisher::failure() const {
    return inside_->failure;
}

std::optional<std::string> BriselReviewLivePublisher::announcementProblem() const {
    const std::optional<QString>& problem = inside_->netService.problem();
    return problem ? std::optional(problem->toStdString()) : std::nullopt;
}

Subscription BriselReviewLivePublisher::observe(std::function<void()> observer) {
    auto held = std::make_shared<std::function<void()>>(std::move(observer));
    inside_->observers.push_back(held);
    return held;
}

bool presentOnIPad(StudioState& state, BriselReviewLivePublisher& publisher) {
    using namespace ReviewBundleExporter;  // NOLINT(google-build-using-namespace)
    if (!hasAnything(state)) {
        state.saveStatusMessage.set(std::string(ReviewWording::nothingToPresent));
        return false;
    }
    std::optional<std::string> packet = encode(build(state, DataPreview::leadingRows));
    if (!packet) {
        state.saveStatusMessage.set(std::string(ReviewWording::notBuilt));
        return false;
    }
    publisher.startPublishing(std::move(packet));
    return true;
}

bool publishLive(const StudioState& state, BriselReviewLivePublisher& publisher) {
    using namespace ReviewBundleExporter;  // NOLINT(google-build-using-namespace)
    std::optional<std::string> packet = encode(build(state, DataPreview::leadingRows));
    if (!packet) {
        return false;
    }
    publisher.setLatestPayload(*std::move(packet));
    return true;
}

}  // namespace sorvane
