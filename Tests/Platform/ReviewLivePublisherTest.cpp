#include "SorvaneMac/Platform/ReviewLivePublisher.h"

#include <fstream>
#include <memory>
#include <sys/socket.h>
#include <vector>

#include <QEventLoop>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Review/ReviewBundleExporter.h"

namespace sorvane {
namespace {

using Client = std::unique_ptr<QTcpSocket>;

/// A publisher on a free port, and clients on real sockets in the same event loop.
class ReviewLivePublisherTest : public testing::Test {
protected:
    Client connected() {
        auto client = std::make_unique<QTcpSocket>();
        client->connectToHost(QHostAddress::LocalHost, publisher_.port());
        EXPECT_TRUE(QTest::qWaitFor([&] { return isOpen(client) || isClosed(client); }, patience));
        return client;
    }
    static bool isOpen(const Client& client) {
        return client->state() == QAbstractSocket::ConnectedState;
    }
    static bool isClosed(const Client& client) {
        return client->state() == QAbstractSocket::UnconnectedState;
    }
    static void awaitClosed(const Client& client) {
        QEventLoop loop;
        QObject::connect(client.get(), &QTcpSocket::disconnected, &loop, &QEventLoop::quit);
        QTimer::singleShot(patience, &loop, &QEventLoop::quit);
        if (!isClosed(client)) {
            loop.exec();
        }
        EXPECT_TRUE(isClosed(client));
    }
    QByteArray greeting() const {
        return "PAIR" + QByteArray::fromStdString(publisher_.pairCode().value_or("----"));
    }
    QByteArray wrongGreeting() const {
        QByteArray wrong = greeting();
        wrong[7] = wrong[7] == '0' ? '1' : '0';
        return wrong;
    }
    /// What a client gets until the connection is closed.
    static QByteArray answer(Client& client, const QByteArray& sent) {
        client->write(sent);
        awaitClosed(client);
        return client->readAll();
    }
    static QByteArray framed(const std::string& packet) {
        const auto prefix = ReviewWire::lengthPrefix(packet.size());
        return QByteArray(reinterpret_cast<const char*>(prefix->data()), 4) +
               QByteArray::fromStdString(packet);
    }
    void expectServes(const std::string& packet) {
        Client client = connected();
        const QByteArray got = answer(client, greeting());
        EXPECT_TRUE(got == framed(packet)) << got.size();
    }

    static constexpr int patience = 60'000;
    const std::string packet_ = R"({"schemaVersion":"1.4"})";
    BriselReviewLivePublisher publisher_{{.port = 0, .mostWaiting = 40, .mostServed = 4}};
};

TEST_F(ReviewLivePublisherTest, GivesThePacketToTheRightCodeAlone) {
    EXPECT_FALSE(publisher_.pairCode());
    publisher_.startPublishing(packet_);
    ASSERT_TRUE(publisher_.isPublishing());
    EXPECT_EQ(publisher_.pairCode()->size(), 4U);
    for (const QByteArray& wrong :
         {wrongGreeting(), QByteArray("GET / HTTP/1.1\r\n"), QByteArray(8, '\0'),
          QByteArray("PAIR????"), QByteArray(100'000, 'P')}) {
        Client client = connected();
        EXPECT_EQ(answer(client, wrong), QByteArray()) << wrong.left(8).toStdString();
    }
    EXPECT_EQ(publisher_.connectedClients(), 0);
    expectServes(packet_);
    expectServes(packet_);
    EXPECT_EQ(publisher_.connectedClients(), 2);
}

TEST_F(ReviewLivePublisherTest, WaitsForTheWholeHandshakeHoweverItComes) {
    publisher_.startPublishing(packet_);
    Client slow = connected();
    for (const char byte : greeting().left(7)) {
        slow->write(QByteArray(1, byte));
        slow->flush();
        expectServes(packet_);
    }
    EXPECT_TRUE(isOpen(slow));
    EXPECT_EQ(slow->bytesAvailable(), 0);
    EXPECT_EQ(answer(slow, greeting().right(1) + "and more\n"), framed(packet_));
    EXPECT_EQ(publisher_.connectedClients(), 8);
}

TEST_F(ReviewLivePublisherTest, ServesAClientThatClosesItsOwnSideAfterTheHandshake) {
    publisher_.startPublishing(std::string(3'000'000, 'x'));
    Client client = connected();
    client->write(greeting());
    client->flush();
    ASSERT_EQ(::shutdown(static_cast<int>(client->socketDescriptor()), SHUT_WR), 0);
    awaitClosed(client);
    EXPECT_EQ(client->readAll().size(), 3'000'004);
}

TEST_F(ReviewLivePublisherTest, AnotherStartHasAnotherCodeAndRefusesTheOld) {
    publisher_.startPublishing(packet_);
    const QByteArray old = greeting();
    // One code in ten thousand is drawn again.
    do {
        publisher_.startPublishing("{}");
    } while (greeting() == old);
    EXPECT_EQ(publisher_.connectedClients(), 0);
    Client client = connected();
    EXPECT_EQ(answer(client, old), QByteArray());
    expectServes("{}");
    publisher_.setLatestPayload(packet_);
    expectServes(packet_);
}

TEST_F(ReviewLivePublisherTest, StopFreesThePortAtOnceAndRefusesThoseWhoWait) {
    publisher_.startPublishing(packet_);
    const std::uint16_t port = publisher_.port();
    const QByteArray code = greeting();
    Client early = connected();
    early->write(code.left(4));
    expectServes(packet_);
    publisher_.stopPublishing();
    EXPECT_FALSE(publisher_.isPublishing());
    EXPECT_FALSE(publisher_.pairCode());
    EXPECT_EQ(publisher_.connectedClients(), 0);
    QTcpServer other;
    EXPECT_TRUE(other.listen(QHostAddress::Any, port)) << other.errorString().toStdString();
    EXPECT_EQ(answer(early, code.right(4)), QByteArray());
}

TEST_F(ReviewLivePublisherTest, SaysWhyItCannotListenAndIsIdleAgain) {
    QTcpServer other;
    ASSERT_TRUE(other.listen());
    BriselReviewLivePublisher second({.port = other.serverPort()});
    int changes = 0;
    const Subscription subscription = second.observe([&changes] { ++changes; });
    second.startPublishing(packet_);
    EXPECT_FALSE(second.isPublishing());
    EXPECT_FALSE(second.pairCode());
    EXPECT_TRUE(second.failure()->starts_with("Live review cannot be offered: "))
        << *second.failure();
    EXPECT_GT(changes, 0);
    other.close();
    second.startPublishing(packet_);
    EXPECT_TRUE(second.isPublishing());
    EXPECT_FALSE(second.failure());
}

TEST_F(ReviewLivePublisherTest, WithoutAPacketAPairedClientIsClosed) {
    publisher_.startPublishing(std::nullopt);
    Client client = connected();
    EXPECT_EQ(answer(client, greeting()), QByteArray());
}

TEST_F(ReviewLivePublisherTest, DropsTheOldestOfACrowdThatSaysNothing) {
    publisher_.startPublishing(packet_);
    int turns = 0;
    QTimer other;
    QObject::connect(&other, &QTimer::timeout, [&turns] { ++turns; });
    other.start(0);
    std::vector<Client> crowd;
    const auto standing = [&crowd] {
        return std::ranges::count_if(crowd, [](const Client& each) { return isOpen(each); });
    };
    // Not all at once: where its queue is full, the system lets a client believe that it is
    // connected.
    for (int batch = 0; batch < 10; ++batch) {
        for (int count = 0; count < 100; ++count) {
            crowd.push_back(std::make_unique<QTcpSocket>());
            crowd.back()->connectToHost(QHostAddress::LocalHost, publisher_.port());
        }
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return std::ranges::all_of(
                    crowd, [](const Client& each) { return isOpen(each) || isClosed(each); });
            },
            patience));
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return standing() <= 40; }, patience)) << standing();
    EXPECT_TRUE(isOpen(crowd.back())) << "the oldest go first";
    EXPECT_GE(turns, 1000 / 32) << "the window had its turns in between";
    expectServes(packet_);
    EXPECT_EQ(publisher_.connectedClients(), 1);
}

TEST_F(ReviewLivePublisherTest, ServesThroughWrongCodesAtFullSpeed) {
    publisher_.startPublishing(packet_);
    std::vector<Client> guessers;
    int refused = 0;
    std::function<void(QTcpSocket&)> guess = [&](QTcpSocket& socket) {
        socket.connectToHost(QHostAddress::LocalHost, publisher_.port());
        socket.write(wrongGreeting());
    };
    for (int count = 0; count < 20; ++count) {
        guessers.push_back(std::make_unique<QTcpSocket>());
        QTcpSocket* socket = guessers.back().get();
        QObject::connect(
            socket, &QTcpSocket::disconnected, socket,
            [&, socket] {
                EXPECT_EQ(socket->bytesAvailable(), 0);
                ++refused;
                guess(*socket);
            },
            Qt::QueuedConnection);
        guess(*socket);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return refused >= 500; }, patience));
    expectServes(packet_);
    EXPECT_EQ(publisher_.connectedClients(), 1);
}

/// The memory of this process, in kilobytes.
std::int64_t residentMemory() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) {
            return std::atoll(line.c_str() + 6);
        }
    }
    return 0;
}

TEST_F(ReviewLivePublisherTest, ReadersThatNeverReadTakeNoMemoryAndDelayNobody) {
    const std::string large(100'000'000, 'x');
    publisher_.startPublishing(large);
    const std::int64_t before = residentMemory();
    std::vector<Client> stuck;
    for (int count = 0; count < 8; ++count) {
        stuck.push_back(connected());
        stuck.back()->setReadBufferSize(1);
        stuck.back()->write(greeting());
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return publisher_.connectedClients() == count + 1; }, patience));
    }
    EXPECT_LT(residentMemory() - before, 50'000);
    // Four are served at a time; those longest without progress made room for the others.
    Client reader = connected();
    reader->write(greeting());
    QByteArray got;
    QObject::connect(reader.get(), &QTcpSocket::readyRead, [&] { got += reader->readAll(); });
    awaitClosed(reader);
    got += reader->readAll();
    EXPECT_TRUE(got == framed(large)) << got.size();
    publisher_.stopPublishing();
}

TEST_F(ReviewLivePublisherTest, CountsAClientNoMoreWhoseConnectionFails) {
    publisher_.startPublishing(std::string(10'000'000, 'x'));
    Client client = connected();
    client->setReadBufferSize(1);
    client->write(greeting());
    ASSERT_TRUE(QTest::qWaitFor([this] { return publisher_.connectedClients() == 1; }, patience));
    client->abort();
    EXPECT_TRUE(QTest::qWaitFor([this] { return publisher_.connectedClients() == 0; }, patience));
}

TEST_F(ReviewLivePublisherTest, TheViewerScriptPairsAndReadsTheStudy) {
    StudioState state{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    EXPECT_FALSE(presentOnIPad(state, publisher_));
    EXPECT_EQ(state.saveStatusMessage.get(),
              "Nothing to present yet. Import data or stage findings in the report builder.");
    EXPECT_FALSE(publisher_.isPublishing());
    state.resetToSample();
    ASSERT_TRUE(presentOnIPad(state, publisher_));
    const auto view = [this](const QString& code) {
        auto viewer = std::make_unique<QProcess>();
        viewer->start("python3", {SORVANE_SOURCE_DIR "/scripts/review_viewer.py", code, "--port",
                                  QString::number(publisher_.port())});
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return viewer->state() == QProcess::NotRunning; }, patience));
        return viewer;
    };
    const auto right = view(QString::fromStdString(*publisher_.pairCode()));
    EXPECT_EQ(right->exitCode(), 0) << right->readAllStandardError().toStdString();
    const QByteArray shown = right->readAllStandardOutput();
    EXPECT_TRUE(shown.startsWith("SampleEIStudy.csv: 300 rows, ")) << shown.left(60).toStdString();
    EXPECT_TRUE(shown.contains("\n\nLeading rows\n------------\n"));
    const auto wrong = view(QString::fromLatin1(wrongGreeting().right(4)));
    EXPECT_EQ(wrong->exitCode(), 1);
    EXPECT_EQ(wrong->readAllStandardError(),
              "The connection was closed without a packet: is the code the one on the screen?\n");
    state.resetToSample();
    publishLive(state, publisher_);
    EXPECT_TRUE(publisher_.isPublishing());
}

}  // namespace
}  // namespace sorvane
