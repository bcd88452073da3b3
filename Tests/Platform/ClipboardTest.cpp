#include "SorvaneMac/Platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <gtest/gtest.h>

#include "SorvaneMac/Platform/FileDialogs.h"

namespace sorvane {
namespace {

TEST(Clipboard, HoldsBothFormsOfATable) {
    Clipboard::setRichText("<p>η² = <i>.30</i></p>", "η² = .30");
    const QMimeData* held = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(held->html(), "<p>η² = <i>.30</i></p>");
    EXPECT_EQ(Clipboard::text(), "η² = .30");
    Clipboard::setText("plain");
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasHtml());
}

TEST(Clipboard, GivesTheFirstFileOfThisComputer) {
    const struct {
        int line;
        QList<QUrl> urls;
        std::optional<std::filesystem::path> file;
    } cases[] = {
        {__LINE__, {}, std::nullopt},
        {__LINE__, {QUrl("https://example.org/a.csv")}, std::nullopt},
        {__LINE__,
         {QUrl("https://example.org/a.csv"), QUrl::fromLocalFile("/data/größe 1.csv"),
          QUrl::fromLocalFile("/data/b.csv")},
         "/data/größe 1.csv"},
    };
    for (const auto& each : cases) {
        auto* copied = new QMimeData;
        copied->setUrls(each.urls);
        QGuiApplication::clipboard()->setMimeData(copied);
        EXPECT_EQ(Clipboard::file(), each.file) << each.line;
    }
}

TEST(FileDialogs, KeepTheLettersOfAFileName) {
    for (const char* name : {"/data/größe 1.csv", "/данные/表.sav", "/data/😀.csv"}) {
        const std::filesystem::path path = std::filesystem::u8path(name);
        EXPECT_EQ(toPath(fromPath(path)), path);
        EXPECT_EQ(fromPath(path), QString::fromUtf8(name));
    }
}

}  // namespace
}  // namespace sorvane
