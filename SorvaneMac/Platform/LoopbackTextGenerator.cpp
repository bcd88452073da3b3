#include "SorvaneMac/Platform/LoopbackTextGenerator.h"

#include <utility>

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>
#include <QUrl>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneMac/Drafting/ChatStream.h"
#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Drafting/LoopbackAddress.h"

namespace sorvane {

namespace {

constexpr int success = 200;
constexpr int notFound = 404;
constexpr int serviceUnavailable = 503;
constexpr qint64 readBuffer = 64 * 1024;
constexpr qsizetype longestRefusal = 64 * 1024;

bool isBlank(const std::string& text) {
    return UnicodeText::trimmed(text).empty();
}

QUrl endpoint(const LoopbackAddress& address) {
    QUrl url;
    url.setScheme("http");
    url.setHost(QString::fromStdString(address.host));
    url.setPort(address.port);
    url.setPath(QString::fromStdString(address.path) + "/chat/completions");
    return url;
}

std::string refusal(int status, const QByteArray& body) {
    const std::string said = chatErrorMessage({body.data(), static_cast<std::size_t>(body.size())});
    const bool lacksModel =
        status == notFound && UnicodeText::lowerCased(said).find("model") != std::string::npos;
    return status == serviceUnavailable || lacksModel
               ? DraftingWording::notReady()
               : DraftingWording::unavailable(DraftingWording::answeredWith(status, said));
}

/// One request and its answer.
class LoopbackRun final : public DraftRun {
public:
    LoopbackRun(QNetworkReply* reply, std::string authority, DraftListener listener)
        : reply_(reply), authority_(std::move(authority)), listener_(std::move(listener)) {
        reply_->setReadBufferSize(readBuffer);
        QObject::connect(reply_, &QNetworkReply::readyRead, &context_, [this] { read(); });
        QObject::connect(reply_, &QNetworkReply::finished, &context_, [this] { finish(); });
    }
    ~LoopbackRun() override { leave(); }
    LoopbackRun(const LoopbackRun&) = delete;
    LoopbackRun& operator=(const LoopbackRun&) = delete;

private:
    int status() const {
        return reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    }

    void read() {
        // An answer that was given up is closed.
        const QByteArray bytes = reply_->isReadable() ? reply_->readAll() : QByteArray();
        if (status() != success) {
            refusal_ += bytes.left(longestRefusal - refusal_.size());
            return;
        }
        const bool hasGrown = stream_.take({bytes.data(), static_cast<std::size_t>(bytes.size())});
        const std::weak_ptr<int> underWay = life_;
        if (hasGrown) {
            tellGrown();
        }
        if (!underWay.expired() && (stream_.isDone() || stream_.failure())) {
            end(stream_.failure());
        }
    }

    void finish() {
        const std::weak_ptr<int> underWay = life_;
        read();
        if (underWay.expired() || hasEnded_) {
            return;
        }
        stream_.finish();
        if (stream_.isDone() || stream_.failure()) {
            tellGrown();
            if (!underWay.expired()) {
                end(stream_.failure());
            }
            return;
        }
        end(whyItBrokeOff());
    }

    std::string whyItBrokeOff() const {
        using Error = QNetworkReply::NetworkError;
        if (status() != 0 && status() != success) {
            return refusal(status(), refusal_);
        }
        switch (reply_->error()) {
            case Error::ConnectionRefusedError:
            case Error::HostNotFoundError:
                return DraftingWording::unavailable(DraftingWording::nothingAnswers(authority_));
            case Error::OperationCanceledError:
            case Error::TimeoutError:
                return DraftingWording::tookTooLong();
            default:
                return DraftingWording::brokeOff();
        }
    }

    // A listener may destroy the run, so each is called as a copy of its own.
    void tellGrown() {
        const auto grown = listener_.grown;
        grown(std::string(stream_.text()));
    }

    void end(const std::optional<std::string>& failure) {
        hasEnded_ = true;
        leave();
        const auto ended = listener_.ended;
        ended(std::optional(failure));
    }

    void leave() {
        if (QNetworkReply* left = std::exchange(reply_, nullptr)) {
            left->disconnect(&context_);
            left->abort();
            left->deleteLater();
        }
    }

    QNetworkReply* reply_;
    std::string authority_;
    DraftListener listener_;
    ChatStream stream_;
    QByteArray refusal_;
    bool hasEnded_ = false;
    /// Tells whether the run stands after a listener was called, which may have destroyed it.
    std::shared_ptr<int> life_ = std::make_shared<int>();
    QObject context_;
};

}  // namespace

LoopbackTextGenerator::LoopbackTextGenerator(std::function<GeneratorSettings()> settings,
                                             int silentMilliseconds)
    : settings_(std::move(settings)),
      silentMilliseconds_(silentMilliseconds),
      network_(std::make_unique<QNetworkAccessManager>()) {
    // The system's proxy would carry the text to another machine.
    network_->setProxy(QNetworkProxy::NoProxy);
    network_->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
}

LoopbackTextGenerator::~LoopbackTextGenerator() = default;

std::optional<std::string> LoopbackTextGenerator::unavailableReason() const {
    const GeneratorSettings settings = settings_();
    if (!settings.isOn) {
        return DraftingWording::turnedOff();
    }
    if (isBlank(settings.address) || isBlank(settings.model)) {
        return DraftingWording::notEligible();
    }
    if (!LoopbackAddress::parse(settings.address)) {
        return DraftingWording::unavailable(DraftingWording::notThisMachine(settings.address));
    }
    return std::nullopt;
}

std::unique_ptr<DraftRun> LoopbackTextGenerator::start(const DraftRequest& request,
                                                       DraftListener listener) {
    const GeneratorSettings settings = settings_();
    const std::optional<LoopbackAddress> address = LoopbackAddress::parse(settings.address);
    if (!settings.isOn || !address) {
        return nullptr;
    }
    QNetworkRequest post(endpoint(*address));
    post.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    post.setRawHeader("Accept", "text/event-stream");
    post.setTransferTimeout(silentMilliseconds_);
    const std::string model(UnicodeText::trimmed(settings.model));
    QNetworkReply* reply =
        network_->post(post, QByteArray::fromStdString(chatRequestBody(request, model)));
    return std::make_unique<LoopbackRun>(reply, address->authority(), std::move(listener));
}

}  // namespace sorvane
