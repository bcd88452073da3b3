#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QDBusObjectPath>
#include <QObject>
#include <QString>

class QDBusMessage;

namespace sorvane {

/// A service as DNS-SD names it.
struct AdvertisedService {
    QString name;
    /// Such as "_brisel-review._tcp".
    QString type;
    quint16 port = 0;
};

/// Makes a service known on the local network through the Avahi daemon of the system.
///
/// Nothing here waits: what the daemon answers arrives with the events of the window. Without a
/// daemon there is a problem in words and all else goes on.
class ServiceAdvertiser final : public QObject {
    Q_OBJECT

public:
    /// `changed` is called when what the functions below tell has changed. `busAddress` names a bus
    /// in place of the system's; for tests.
    explicit ServiceAdvertiser(std::function<void()> changed, QString busAddress = {});
    ~ServiceAdvertiser() override;

    /// Publishes the service in place of a former one. A name that is taken is altered.
    void publish(const AdvertisedService& service);
    void withdraw();

    /// The name under which the network knows the service; absent until it does.
    const std::optional<QString>& publishedName() const { return publishedName_; }
    /// Why it does not know it; absent while nothing is wrong.
    const std::optional<QString>& problem() const { return problem_; }

private slots:
    void noteGroupState(int state, const QString& error);

private:
    bool connectToBus();
    void askForGroup();
    void addService();
    void commit();
    void takeAnotherName();
    void fail(const QString& why);
    /// Calls the daemon; `answered` gets its answer unless the service was withdrawn meanwhile.
    void call(const QDBusMessage& message, std::function<void(const QDBusMessage&)> answered);

    std::function<void()> changed_;
    const QString busAddress_;
    AdvertisedService service_;
    QString bus_;
    QString group_;
    int namesTried_ = 0;
    /// Counts publications, so that answers to a former one are told apart.
    int publication_ = 0;
    std::optional<QString> publishedName_;
    std::optional<QString> problem_;
};

}  // namespace sorvane
