#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <QDropEvent>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ApaTableView.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/MainWindow.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {

/// The window with a folder of its own, whose questions a test answers and remembers.
class WindowFixture : public ::testing::Test {
protected:
    WindowFixture()
        : application_(offscreenApplication()),
          state_(std::filesystem::path(SORVANE_SOURCE_DIR) / "Resources"),
          screens_(state_),
          window_(state_, screens_) {
        window_.resize(1280, 800);
        window_.workspace().confirm = [this](QWidget*, const Question& question) {
            asked_.push_back(utf8(question.title + "\n" + question.text));
            return answer_;
        };
        window_.workspace().askToSave = [this](QWidget*, const QString& name) {
            asked_.push_back("save " + utf8(name));
            return saveAnswer_;
        };
        window_.workspace().dialogs.save = [this](QWidget*, const SaveRequest& request) {
            return std::optional(folder_ / request.suggestedName);
        };
        std::filesystem::create_directories(folder_);
    }
    ~WindowFixture() override { std::filesystem::remove_all(folder_); }

    /// Lets the window draw what has changed.
    void settle() { QCoreApplication::processEvents(); }

    std::filesystem::path write(const std::string& name, const std::string& text) {
        QFile file(fromPath(folder_ / name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray::fromStdString(text));
        return folder_ / name;
    }
    QByteArray read(const std::string& name) {
        QFile file(fromPath(folder_ / name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    void drop(const std::filesystem::path& file) {
        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile(fromPath(file))});
        QDragEnterEvent enter(QPoint(600, 400), Qt::CopyAction, &dropped, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(&window_, &enter);
        QDropEvent event(QPointF(600, 400), Qt::CopyAction, &dropped, Qt::LeftButton,
                         Qt::NoModifier);
        QCoreApplication::sendEvent(&window_, &event);
        settle();
    }

    void show(StudioScreen screen) {
        state_.selection.set(screen);
        settle();
    }

    QPushButton* button(const QString& label) {
        for (QPushButton* each : window_.page().findChildren<QPushButton*>()) {
            if (each->text() == label && each->isVisibleTo(&window_)) {
                return each;
            }
        }
        return nullptr;
    }

    bool says(const QString& text) {
        const QList<QLabel*> labels = window_.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->isVisibleTo(&window_) && Labels::shown(*label) == text;
        });
    }

    QString tableText() {
        QString text;
        for (const ApaTableView* table : window_.page().findChildren<ApaTableView*>()) {
            text += table->accessibleDescription() + "\n";
        }
        return text;
    }

    QApplication& application_;
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_;
    StudioScreens screens_;
    MainWindow window_;
    bool answer_ = true;
    SaveAnswer saveAnswer_ = SaveAnswer::discard;
    std::vector<std::string> asked_;
};

}  // namespace sorvane
