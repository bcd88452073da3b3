#include "SorvaneMac/Platform/LoopbackTextGenerator.h"

#include <nlohmann/json.hpp>

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {
namespace {

constexpr auto streaming =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nConnection: close\r\n\r\n";

/// A server of this machine that answers as a test says, and a generator that asks it.
class LoopbackTextGeneratorTest : public testing::Test {
protected:
    LoopbackTextGeneratorTest() {
        EXPECT_TRUE(server_.listen(QHostAddress::LocalHost));
        settings_ = {.isOn = true,
                     .address = "http://localhost:" + std::to_string(server_.serverPort()) + "/v1",
                     .model = "small"};
        QObject::connect(&server_, &QTcpServer::newConnection, [this] {
            socket_ = server_.nextPendingConnection();
            ++connections_;
            QObject::connect(socket_, &QTcpSocket::readyRead,
                             [this] { request_ += socket_->readAll(); });
        });
    }

    void start() {
        run_ =
            generator_.start({.instructions = "Explain.", .prompt = "t(3) = 2 \"µ\""},
                             {.grown = [this](const std::string& text) { shown_.push_back(text); },
                              .ended =
                                  [this](const std::optional<std::string>& failure) {
                                      ++ends_;
                                      failure_ = failure.value_or("");
                                  }});
    }
    void await(const std::function<bool()>& condition) {
        EXPECT_TRUE(QTest::qWaitFor(condition, 30'000));
    }
    void awaitRequest() {
        await([this] { return request_.contains("\r\n\r\n") && request_.endsWith("}"); });
    }
    void send(const QByteArray& bytes) {
        socket_->write(bytes);
        socket_->flush();
    }
    static QByteArray event(const QByteArray& content) {
        return "data: {\"choices\":[{\"delta\":{\"content\":\"" + content + "\"}}]}\n\n";
    }
    /// What a draft ends with where the server gives this whole answer.
    std::string failureOf(const QByteArray& answer) {
        ends_ = 0;
        request_.clear();
        start();
        awaitRequest();
        send(answer);
        socket_->disconnectFromHost();
        await([this] { return ends_ == 1; });
        return failure_;
    }

    QTcpServer server_;
    QTcpSocket* socket_ = nullptr;
    int connections_ = 0;
    QByteArray request_;
    GeneratorSettings settings_;
    LoopbackTextGenerator generator_{[this] { return settings_; }, 30'000};
    std::vector<std::string> shown_;
    int ends_ = 0;
    std::string failure_;
    /// Last, so that it goes before what it tells.
    std::unique_ptr<DraftRun> run_;
};

TEST_F(LoopbackTextGeneratorTest, StreamsTheAnswerAsItComes) {
    EXPECT_EQ(generator_.unavailableReason(), std::nullopt);
    start();
    awaitRequest();
    EXPECT_TRUE(request_.startsWith("POST /v1/chat/completions HTTP/1.1\r\n"));
    const Json body = Json::parse(request_.mid(request_.indexOf("\r\n\r\n")).toStdString());
    EXPECT_EQ(body["model"], "small");
    EXPECT_EQ(body["stream"], true);
    EXPECT_EQ(body["messages"][0]["role"], "system");
    EXPECT_EQ(body["messages"][0]["content"], "Explain.");
    EXPECT_EQ(body["messages"][1]["content"], "t(3) = 2 \"µ\"");
    send(streaming + event("The groups "));
    await([this] { return !shown_.empty(); });
    EXPECT_EQ(shown_, std::vector<std::string>{"The groups "});
    EXPECT_EQ(ends_, 0);
    send(event("differ.") + "data: [DONE]\n\n");
    await([this] { return ends_ == 1; });
    EXPECT_EQ(shown_.back(), "The groups differ.");
    EXPECT_EQ(failure_, "");
}

TEST_F(LoopbackTextGeneratorTest, ACancelledDraftIsSilentAndLeavesTheServer) {
    start();
    awaitRequest();
    send(streaming + event("The "));
    await([this] { return !shown_.empty(); });
    run_.reset();
    await([this] { return socket_->state() == QAbstractSocket::UnconnectedState; });
    EXPECT_EQ(shown_.size(), 1U);
    EXPECT_EQ(ends_, 0);
}

TEST_F(LoopbackTextGeneratorTest, SaysWhyThereIsNoDraft) {
    const QByteArray refusal = "HTTP/1.1 ";
    EXPECT_EQ(failureOf(refusal + "503 Busy\r\nContent-Length: 0\r\n\r\n"),
              "The on-device model is still downloading. Try again shortly.");
    const QByteArray noModel = R"({"error":{"message":"model 'small' not found"}})";
    EXPECT_EQ(failureOf(refusal + "404 Not Found\r\nContent-Length: " +
                        QByteArray::number(noModel.size()) + "\r\n\r\n" + noModel),
              "The on-device model is still downloading. Try again shortly.");
    EXPECT_EQ(failureOf(refusal + "500 Oops\r\nContent-Length: 17\r\n\r\n{\"error\":\"tired\"}"),
              "Apple Intelligence is unavailable (the server answered with status 500: tired)");
    EXPECT_EQ(failureOf(streaming + event("Half")), "The server broke the draft off.");
    EXPECT_EQ(shown_.back(), "Half");
    EXPECT_EQ(failureOf(QByteArray(streaming) + "data: {\n\n"),
              "Apple Intelligence is unavailable (the server's answer is not of the "
              "chat-completions form)");
    server_.close();
    start();
    await([this] { return ends_ == 2; });
    EXPECT_TRUE(
        failure_.starts_with("Apple Intelligence is unavailable (nothing answers at 127.0.0.1:"))
        << failure_;
}

TEST_F(LoopbackTextGeneratorTest, FollowsNobodyToAnotherPlace) {
    QTcpServer elsewhere;
    ASSERT_TRUE(elsewhere.listen(QHostAddress::LocalHost));
    EXPECT_EQ(failureOf("HTTP/1.1 307 Temporary Redirect\r\nContent-Length: 0\r\nLocation: "
                        "http://127.0.0.1:" +
                        QByteArray::number(elsewhere.serverPort()) + "/\r\n\r\n"),
              "Apple Intelligence is unavailable (the server answered with status 307)");
    EXPECT_FALSE(elsewhere.hasPendingConnections());
}

TEST_F(LoopbackTextGeneratorTest, AsksNobodyWithoutLeaveOrBeyondThisMachine) {
    const GeneratorSettings allowed = settings_;
    const struct {
        int line;
        GeneratorSettings settings;
        std::string reason;
    } cases[] = {
        {__LINE__,
         {.isOn = false, .address = allowed.address, .model = "small"},
         "Turn on Apple Intelligence in System Settings to use Sorvane Intelligence."},
        {__LINE__,
         {.isOn = true, .address = " ", .model = "small"},
         "This Mac does not support Apple Intelligence."},
        {__LINE__,
         {.isOn = true, .address = allowed.address, .model = ""},
         "This Mac does not support Apple Intelligence."},
        {__LINE__,
         {.isOn = true, .address = "http://example.com/v1", .model = "small"},
         "Apple Intelligence is unavailable (\"http://example.com/v1\" is no address of this "
         "machine)"},
    };
    for (const auto& each : cases) {
        settings_ = each.settings;
        EXPECT_EQ(generator_.unavailableReason(), each.reason) << "line " << each.line;
    }
    start();
    EXPECT_FALSE(run_);
    EXPECT_EQ(connections_, 0);
}

TEST_F(LoopbackTextGeneratorTest, GivesUpOnAServerThatIsSilent) {
    LoopbackTextGenerator impatient([this] { return settings_; }, 50);
    run_ = impatient.start({}, {.grown = [](const std::string&) {},
                                .ended =
                                    [this](const std::optional<std::string>& failure) {
                                        ++ends_;
                                        failure_ = failure.value_or("");
                                    }});
    await([this] { return ends_ == 1; });
    EXPECT_EQ(failure_,
              "The server gave no sign of life for two minutes, so the draft was given up.");
    run_.reset();
}

}  // namespace
}  // namespace sorvane
