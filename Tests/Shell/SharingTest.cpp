#include <QCheckBox>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/Shell/IntelligenceCard.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReviewDesk.h"
#include "SorvaneMac/Shell/ScriptedReview.h"
#include "Tests/Shell/WindowFixture.h"

namespace sorvane {
namespace {

/// Share & export, publishing on a port that is free.
class SharingTest : public WindowFixture {
protected:
    SharingTest() {
        window_.workspace().desk =
            std::make_shared<ReviewDesk>(state_, BriselReviewLivePublisher::Options{.port = 0});
        state_.importPastedData("site,score\nnorth,1\nsouth,2\nnorth,4\n");
        ReportItem item;
        item.id = Uuid::fresh();
        item.title = "t-test";
        item.apaSummary = "t(38) = 2.1, p = .04";
        state_.addToReport(item);
        show(StudioScreen::export_);
    }
    void click(const QString& label) {
        QPushButton* pressed = button(label);
        ASSERT_TRUE(pressed) << utf8(label);
        QTest::mouseClick(pressed, Qt::LeftButton);
        settle();
    }
    std::string status() const { return state_.saveStatusMessage->value_or(""); }
    ReviewDesk& desk() { return *window_.workspace().desk; }
    /// Presses a button of the sheet.
    void press(const QString& label) {
        const QList<QPushButton*> buttons = desk().sheet->findChildren<QPushButton*>();
        const auto found = std::ranges::find(buttons, label, &QPushButton::text);
        ASSERT_TRUE(found != buttons.end()) << utf8(label);
        (*found)->click();
    }
    /// The packet that a client gets.
    static Json received(std::uint16_t port, const std::string& code) {
        QTcpSocket client;
        client.connectToHost(QHostAddress::LocalHost, port);
        client.write(QByteArray::fromStdString("PAIR" + code));
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return client.state() == QAbstractSocket::UnconnectedState; }, 30'000));
        return Json::parse(client.readAll().mid(4).toStdString());
    }
    bool sheetSays(const QString& text) {
        const QList<QLabel*> labels = desk().sheet->findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* each) {
            return each->isVisibleTo(desk().sheet) && Labels::shown(*each) == text;
        });
    }
};

TEST_F(SharingTest, WritesAPacketWhereTheUserSays) {
    QCheckBox* preview = nullptr;
    for (QCheckBox* each : window_.page().findChildren<QCheckBox*>()) {
        preview = each->text().contains("25 rows") ? each : preview;
    }
    ASSERT_TRUE(preview);
    click("Export to iPad…");
    EXPECT_FALSE(Json::parse(read("Pasted data.bsk").toStdString()).contains("previewRows"));
    preview->click();
    click("Export to iPad…");
    EXPECT_TRUE(Json::parse(read("Pasted data.bsk").toStdString()).contains("previewRows"));
    EXPECT_EQ(status(), "Exported to " + (folder_ / "Pasted data.bsk").string() +
                            ". Open in Kestrin Deck on iPad.");
    EXPECT_EQ(state_.defaults().value("sv.review.packetHasPreview"), true);
}

TEST_F(SharingTest, TheSheetShowsTheCodeCountsClientsAndEndsThePublishing) {
    click("Present on iPad…");
    ASSERT_TRUE(desk().sheet);
    BriselReviewLivePublisher& publisher = desk().publisher;
    ASSERT_TRUE(publisher.isPublishing());
    const std::string code = *publisher.pairCode();
    EXPECT_TRUE(
        sheetSays(QString("%1 %2 %3 %4").arg(code[0]).arg(code[1]).arg(code[2]).arg(code[3])));
    EXPECT_TRUE(sheetSays("Waiting for iPad…"));
    const Json packet = received(publisher.port(), code);
    EXPECT_EQ(packet["previewRows"].size(), 3U);
    EXPECT_EQ(packet["findings"].size(), 1U);
    EXPECT_TRUE(sheetSays("1 iPad has connected."));
    state_.clearReport();
    press("Update packet");
    EXPECT_EQ(*publisher.pairCode(), code);
    EXPECT_TRUE(received(publisher.port(), code)["findings"].empty());
    press("Stop broadcasting");
    EXPECT_FALSE(publisher.isPublishing());
    EXPECT_TRUE(QTest::qWaitFor([&] { return desk().sheet.isNull(); }, 30'000));
}

TEST_F(SharingTest, AScriptOffersALiveReviewAndWaitsForItsClients) {
    std::unique_ptr<QTcpSocket> client = std::make_unique<QTcpSocket>();
    LiveReviewRequest request{.port = 0, .seconds = 30.0};
    request.began = [&client](const std::string& pairCode, std::uint16_t port) {
        client->connectToHost(QHostAddress::LocalHost, port);
        client->write(QByteArray::fromStdString("PAIR" + pairCode));
    };
    const LiveReviewOutcome outcome = offerLiveReview(state_, request);
    EXPECT_EQ(outcome.clients, 1);
    EXPECT_EQ(outcome.failure, std::nullopt);
    EXPECT_TRUE(QTest::qWaitFor(
        [&client] { return client->state() == QAbstractSocket::UnconnectedState; }, 30'000));
    EXPECT_EQ(Json::parse(client->readAll().mid(4).toStdString())["rowCount"], 3);
    request.seconds = 0.01;
    request.began = [](const std::string&, std::uint16_t) {
    };
    EXPECT_EQ(offerLiveReview(state_, request).clients, 0);
}

TEST(Leading, CutsNoCharacterInTwo) {
    const QString text = QString::fromUtf8("ab\U0001F600c");
    EXPECT_EQ(leading(text, 3), "ab");
    EXPECT_EQ(leading(text, 4), QString::fromUtf8("ab\U0001F600"));
    EXPECT_EQ(leading(text, 5), text);
    EXPECT_EQ(leading(text, 9), text);
}

TEST_F(SharingTest, DraftsWithALocalServerFlagsItsNumbersAndTakesARating) {
    EXPECT_TRUE(says("Turn on Apple Intelligence in System Settings to use Sorvane Intelligence."));
    EXPECT_FALSE(button("Draft")->isEnabled());
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, [&server] {
        QTcpSocket* socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, [socket] {
            if (socket->peek(1 << 20).endsWith("}")) {
                socket->readAll();
                socket->write(
                    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\n\r\n"
                    "data: {\"choices\":[{\"delta\":{\"content\":\"They differ by "
                    "3.\"}}]}\n\ndata: [DONE]\n\n");
            }
        });
    });
    SharingFields& fields = state_.sharing;
    fields.intelligenceIsOn.set(true);
    fields.intelligenceAddress.set("http://127.0.0.1:" + std::to_string(server.serverPort()));
    fields.intelligenceModel.set("small");
    settle();
    click("Draft");
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Shorter") != nullptr; }, 30'000));
    EXPECT_TRUE(says("They differ by 3."));
    EXPECT_TRUE(says(
        "This number is not in the findings: 3. Check it and its sign before you use the text."));
    EXPECT_TRUE(says("Helpful?"));
    click("Rate this response helpful");
    EXPECT_TRUE(says("Thanks for the feedback."));
    EXPECT_FALSE(says("Helpful?"));
    EXPECT_EQ(state_.defaults().value("sv.intelligence.feedback.up"), 1);
    server.close();
    click("Shorter");
    EXPECT_TRUE(QTest::qWaitFor([this] { return button("Draft") != nullptr; }, 30'000));
    EXPECT_TRUE(says("Apple Intelligence is unavailable (nothing answers at 127.0.0.1:" +
                     qtText(fields.intelligenceAddress->substr(17)) + ")"));
}

}  // namespace
}  // namespace sorvane
