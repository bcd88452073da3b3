#include "SorvaneMac/Platform/ServiceAdvertiser.h"

#include <QByteArrayList>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QUuid>

namespace sorvane {

namespace {

constexpr auto avahi = "org.freedesktop.Avahi";
constexpr auto serverInterface = "org.freedesktop.Avahi.Server";
constexpr auto groupInterface = "org.freedesktop.Avahi.EntryGroup";
constexpr auto collisionError = "org.freedesktop.Avahi.CollisionError";
constexpr int anyInterface = -1;
constexpr int anyProtocol = -1;
constexpr int mostNames = 12;

/// States of an entry group, as the daemon numbers them.
constexpr int established = 2;
constexpr int collision = 3;
constexpr int failure = 4;

QDBusMessage serverCall(const char* method) {
    return QDBusMessage::createMethodCall(avahi, "/", serverInterface, method);
}

bool isError(const QDBusMessage& answer) {
    return answer.type() == QDBusMessage::ErrorMessage;
}

}  // namespace

ServiceAdvertiser::ServiceAdvertiser(std::function<void()> changed, QString busAddress)
    : changed_(std::move(changed)), busAddress_(std::move(busAddress)) {
    // The form of a TXT record, which every announcement has, if without entries.
    qDBusRegisterMetaType<QByteArrayList>();
}

ServiceAdvertiser::~ServiceAdvertiser() {
    changed_ = [] {
    };
    withdraw();
}

void ServiceAdvertiser::publish(const AdvertisedService& service) {
    withdraw();
    service_ = service;
    namesTried_ = 1;
    // A connection of its own: when it goes, the daemon forgets what was published over it.
    bus_ = "sorvane-" + QUuid::createUuid().toString(QUuid::WithoutBraces);
    if (!connectToBus()) {
        fail("this machine has no system bus over which services are announced");
        return;
    }
    askForGroup();
}

bool ServiceAdvertiser::connectToBus() {
    return (busAddress_.isEmpty() ? QDBusConnection::connectToBus(QDBusConnection::SystemBus, bus_)
                                  : QDBusConnection::connectToBus(busAddress_, bus_))
        .isConnected();
}

void ServiceAdvertiser::withdraw() {
    ++publication_;
    const bool wasShown = publishedName_ || problem_;
    publishedName_.reset();
    problem_.reset();
    group_.clear();
    if (!bus_.isEmpty()) {
        QDBusConnection::disconnectFromBus(bus_);
        bus_.clear();
    }
    if (wasShown) {
        changed_();
    }
}

void ServiceAdvertiser::call(const QDBusMessage& message,
                             std::function<void(const QDBusMessage&)> answered) {
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection(bus_).asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, asked = publication_,
             answered = std::move(answered)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (asked == publication_) {
                    answered(finished->reply());
                }
            });
}

void ServiceAdvertiser::askForGroup() {
    call(serverCall("EntryGroupNew"), [this](const QDBusMessage& answer) {
        if (isError(answer) || answer.arguments().isEmpty()) {
            fail("the service that announces others (Avahi) is not running on this machine");
            return;
        }
        group_ = answer.arguments().constFirst().value<QDBusObjectPath>().path();
        QDBusConnection(bus_).connect(avahi, group_, groupInterface, "StateChanged", this,
                                      SLOT(noteGroupState(int, QString)));
        addService();
    });
}

void ServiceAdvertiser::addService() {
    QDBusMessage message =
        QDBusMessage::createMethodCall(avahi, group_, groupInterface, "AddService");
    message << anyInterface << anyProtocol << 0U << service_.name << service_.type
            << QString("local") << QString() << QVariant::fromValue(service_.port)
            << QVariant::fromValue(QByteArrayList());
    call(message, [this](const QDBusMessage& answer) {
        if (answer.errorName() == collisionError) {
            takeAnotherName();
        } else if (isError(answer)) {
            fail("Avahi does not take the announcement: " + answer.errorMessage());
        } else {
            commit();
        }
    });
}

void ServiceAdvertiser::commit() {
    call(QDBusMessage::createMethodCall(avahi, group_, groupInterface, "Commit"),
         [this](const QDBusMessage& answer) {
             if (isError(answer)) {
                 fail("Avahi does not take the announcement: " + answer.errorMessage());
             }
         });
}

void ServiceAdvertiser::noteGroupState(int state, const QString& error) {
    if (state == established) {
        publishedName_ = service_.name;
        problem_.reset();
        changed_();
    } else if (state == collision) {
        takeAnotherName();
    } else if (state == failure) {
        fail("Avahi could not announce it: " + error);
    }
}

void ServiceAdvertiser::takeAnotherName() {
    publishedName_.reset();
    if (namesTried_ == mostNames) {
        fail("every name that was tried is taken on this network");
        return;
    }
    ++namesTried_;
    QDBusMessage message = serverCall("GetAlternativeServiceName");
    message << service_.name;
    call(message, [this](const QDBusMessage& answer) {
        if (isError(answer)) {
            fail("Avahi does not take the announcement: " + answer.errorMessage());
            return;
        }
        service_.name = answer.arguments().constFirst().toString();
        call(QDBusMessage::createMethodCall(avahi, group_, groupInterface, "Reset"),
             [this](const QDBusMessage&) { addService(); });
    });
}

void ServiceAdvertiser::fail(const QString& why) {
    publishedName_.reset();
    problem_ = why;
    changed_();
}

}  // namespace sorvane
