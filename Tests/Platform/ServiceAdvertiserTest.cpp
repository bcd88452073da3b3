#include "SorvaneMac/Platform/ServiceAdvertiser.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace sorvane {
namespace {

constexpr auto avahi = "org.freedesktop.Avahi";
constexpr int patience = 30'000;

QByteArray busConfiguration(const QByteArray& address) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\"><busconfig>"
           "<type>system</type><listen>" +
           address +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow "
           "send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow "
           "own=\"*\"/></policy>"
           "</busconfig>";
}

/// A system bus of the test's own, on which it may run the daemon that announces services.
class ServiceAdvertiserTest : public testing::Test {
protected:
    ~ServiceAdvertiserTest() override {
        for (QProcess* each : {&avahiDaemon_, &busDaemon_}) {
            each->terminate();
            each->waitForFinished();
        }
    }

    QString write(const QString& name, const QByteArray& text) {
        QFile file(folder_.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        return file.fileName();
    }
    static QString program(const QString& name) {
        const QString found = QStandardPaths::findExecutable(name);
        return found.isEmpty() ? QStandardPaths::findExecutable(name, {"/usr/sbin", "/sbin"})
                               : found;
    }
    bool startBus() {
        const QString daemon = program("dbus-daemon");
        if (daemon.isEmpty()) {
            return false;
        }
        busDaemon_.start(daemon, {"--nofork", "--print-address", "--config-file",
                                  write("bus.conf", busConfiguration(address_.toUtf8()))});
        return QTest::qWaitFor([this] { return busDaemon_.canReadLine(); }, patience);
    }
    bool startAvahi() {
        const QString daemon = program("avahi-daemon");
        if (daemon.isEmpty() || !QDir().mkpath("/run/avahi-daemon")) {
            return false;
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DBUS_SYSTEM_BUS_ADDRESS", address_);
        avahiDaemon_.setProcessEnvironment(environment);
        avahiDaemon_.setProcessChannelMode(QProcess::MergedChannels);
        avahiDaemon_.start(daemon, {"--no-drop-root", "--no-chroot", "--no-rlimits", "-f",
                                    write("avahi.conf", "[publish]\npublish-workstation=no\n")});
        QByteArray said;
        return QTest::qWaitFor(
                   [&] {
                       said += avahiDaemon_.readAll();
                       return said.contains("startup complete") ||
                              avahiDaemon_.state() == QProcess::NotRunning;
                   },
                   patience) &&
               said.contains("startup complete");
    }
    void await(const std::function<bool()>& condition) {
        EXPECT_TRUE(QTest::qWaitFor(condition, patience));
    }

    QTemporaryDir folder_;
    const QString address_ = "unix:path=" + folder_.filePath("bus");
    QProcess busDaemon_;
    QProcess avahiDaemon_;
};

TEST_F(ServiceAdvertiserTest, AnnouncesWhereADaemonRunsAndSaysWhereNone) {
    int changes = 0;
    ServiceAdvertiser advertiser([&changes] { ++changes; }, address_);
    advertiser.publish({.name = "Desk", .type = "_brisel-review._tcp", .port = 9847});
    EXPECT_EQ(advertiser.problem(),
              QString("this machine has no system bus over which services are announced"));
    if (!startBus()) {
        GTEST_SKIP() << "There is no dbus-daemon to start.";
    }
    advertiser.publish({.name = "Desk", .type = "_brisel-review._tcp", .port = 9847});
    await([&] { return advertiser.problem().has_value(); });
    EXPECT_EQ(advertiser.problem(),
              QString("the service that announces others (Avahi) is not running on this machine"));
    EXPECT_FALSE(advertiser.publishedName());
    EXPECT_EQ(changes, 3) << "the first, its end, the second";
    if (!startAvahi()) {
        GTEST_SKIP() << "There is no avahi-daemon to start, or no right to start it.";
    }
    advertiser.publish({.name = "Desk", .type = "_brisel-review._tcp", .port = 9847});
    await([&] { return advertiser.publishedName().has_value(); });
    EXPECT_EQ(advertiser.publishedName(), QString("Desk"));
    EXPECT_FALSE(advertiser.problem()) << advertiser.problem()->toStdString();

    QDBusMessage ask = QDBusMessage::createMethodCall(avahi, "/", "org.freedesktop.Avahi.Server",
                                                      "ResolveService");
    ask << -1 << -1 << QString("Desk") << QString("_brisel-review._tcp") << QString("local") << -1
        << 0U;
    const QDBusConnection asking = QDBusConnection::connectToBus(address_, "asking");
    const QDBusMessage told = asking.call(ask);
    ASSERT_EQ(told.arguments().size(), 11) << told.errorMessage().toStdString();
    EXPECT_EQ(told.arguments()[8].toUInt(), 9847U);

    ServiceAdvertiser second([] {}, address_);
    second.publish({.name = "Desk", .type = "_brisel-review._tcp", .port = 9848});
    await([&] { return second.publishedName().has_value(); });
    EXPECT_EQ(second.publishedName(), QString("Desk #2"));

    advertiser.withdraw();
    EXPECT_FALSE(advertiser.publishedName());
    second.publish({.name = "Desk", .type = "_brisel-review._tcp", .port = 9848});
    await([&] { return second.publishedName().has_value(); });
    EXPECT_EQ(second.publishedName(), QString("Desk")) << "the name is free again";
}

}  // namespace
}  // namespace sorvane
