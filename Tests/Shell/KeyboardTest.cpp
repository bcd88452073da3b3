#include <algorithm>
#include <filesystem>

#include <QListView>
#include <QPushButton>
#include <QTest>
#include <QTextEdit>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/ScreenFields.h"
#include "SorvaneMac/Shell/MainWindow.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

/// The window as someone without a mouse has it: nothing is called but keys.
class Keyboard : public ::testing::Test {
protected:
    Keyboard()
        : application_(offscreenApplication()),
          state_(resources_),
          screens_(state_),
          window_(state_, screens_) {
        std::filesystem::create_directories(folder_);
        window_.workspace().dialogs.openDataFile = [this](QWidget*) {
            return std::optional(resources_ / "SampleEIStudy.csv");
        };
        window_.workspace().dialogs.openProject = [this](QWidget*) {
            return std::optional(saved_);
        };
        window_.workspace().askToSave = [](QWidget*, const QString&) {
            return SaveAnswer::discard;
        };
        window_.workspace().dialogs.save = [this](QWidget*, const SaveRequest& request) {
            saved_ = folder_ / request.suggestedName;
            return std::optional(saved_);
        };
        window_.show();
        window_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    ~Keyboard() override { std::filesystem::remove_all(folder_); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* focused = window_.focusWidget();
        QTest::keyClick(focused ? focused : &window_, key, modifiers);
        QCoreApplication::processEvents();
    }
    void goTo(StudioScreen screen) {
        for (int presses = 0; state_.selection.get() != screen && presses < 40; ++presses) {
            press(state_.selection.get() < screen ? Qt::Key_PageDown : Qt::Key_PageUp,
                  Qt::ControlModifier);
        }
        ASSERT_EQ(state_.selection.get(), screen);
    }
    /// Presses Tab until the focus is on the control of that name.
    bool tabTo(const QString& name) {
        for (int presses = 0; presses < 80; ++presses) {
            press(Qt::Key_Tab);
            const QWidget* focused = window_.focusWidget();
            const auto* button = qobject_cast<const QAbstractButton*>(focused);
            if (focused &&
                (focused->accessibleName() == name || (button && button->text() == name))) {
                return true;
            }
        }
        return false;
    }

    const std::filesystem::path resources_ =
        std::filesystem::path(SORVANE_SOURCE_DIR) / "Resources";
    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / Uuid::fresh().text();
    std::filesystem::path saved_;
    QApplication& application_;
    StudioState state_;
    StudioScreens screens_;
    MainWindow window_;
};

TEST_F(Keyboard, LeadsFromAFileToAnExportedReport) {
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(state_.selection.get(), StudioScreen::instrumentMap);
    EXPECT_EQ(state_.dataset().rowCount(), 300);

    goTo(StudioScreen::variableTypes);
    EXPECT_TRUE(tabTo("Variables and their roles"));
    press(Qt::Key_Down);
    EXPECT_TRUE(tabTo("Outcome"));
    press(Qt::Key_Space);
    EXPECT_EQ(state_.dataset().variables[1].assignedType, VariableKind::outcome);

    goTo(StudioScreen::scalesReliability);
    press(Qt::Key_R, Qt::ControlModifier);
    EXPECT_EQ(state_.reportItems->size(), 1U);

    goTo(StudioScreen::regression);
    EXPECT_TRUE(tabTo("Run regression"));
    press(Qt::Key_Space);
    EXPECT_TRUE(screens_.fields.regression.regHasRun.get());
    EXPECT_TRUE(tabTo("Add to report"));
    press(Qt::Key_Space);
    EXPECT_EQ(state_.reportItems->size(), 2U);

    press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(state_.selection.get(), StudioScreen::findings);
    EXPECT_TRUE(state_.reportRTFData.get());
    press(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(saved_.extension(), ".pdf");
    EXPECT_TRUE(std::filesystem::exists(saved_));

    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(saved_.filename(), "SampleEIStudy.csv.svp");
    EXPECT_FALSE(state_.hasUnsavedWork());
    state_.clearReport();
    press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(state_.reportItems->size(), 2U);
}

TEST_F(Keyboard, SetsItalicsInTheReportAndImportsElsewhere) {
    int imports = 0;
    window_.workspace().dialogs.openDataFile = [&imports](QWidget*) {
        ++imports;
        return std::optional<std::filesystem::path>();
    };
    state_.resetToSample();
    goTo(StudioScreen::descriptives);
    press(Qt::Key_R, Qt::ControlModifier);
    press(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    auto* editor = window_.page().findChild<QTextEdit*>();
    const auto italic = [this] {
        for (const auto* button : window_.page().findChildren<QPushButton*>()) {
            if (button->accessibleName() == "Italic") {
                return button->isChecked();
            }
        }
        return false;
    };
    editor->setFocus();
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_TRUE(editor->fontItalic());
    EXPECT_TRUE(italic());
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_FALSE(editor->fontItalic());
    EXPECT_EQ(imports, 0);

    goTo(StudioScreen::descriptives);
    press(Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(imports, 1);
}

TEST_F(Keyboard, ReachesNavigationScreenAndInspectorWithOneKey) {
    state_.resetToSample();
    QCoreApplication::processEvents();
    std::vector<const QWidget*> visited;
    for (int pane = 0; pane < 4; ++pane) {
        press(Qt::Key_F6);
        visited.push_back(window_.focusWidget());
    }
    EXPECT_EQ(visited.front(), visited.back()) << "three panes, and the first again";
    EXPECT_NE(visited[0], visited[1]);
    EXPECT_NE(visited[1], visited[2]);
    EXPECT_TRUE(window_.page().isAncestorOf(visited[0]) ||
                window_.page().isAncestorOf(visited[1]) || window_.page().isAncestorOf(visited[2]));
}

/// What a widget moves in when something is scrolled; null where it stays.
const QWidget* scrolledIn(const QWidget* widget) {
    while ((widget = widget->parentWidget()) && !widget->inherits("QAbstractScrollArea")) {
    }
    return widget;
}

/// From a control, Tab leads down or to the right, never back to what was read before.
TEST_F(Keyboard, LeadsThroughEveryScreenInTheOrderOfReading) {
    state_.resetToSample();
    for (const StudioScreen screen : allStudioScreens()) {
        state_.selection.set(screen);
        QCoreApplication::processEvents();
        const QWidget* before = nullptr;
        const QWidget* at = &window_.page();
        while ((at = at->nextInFocusChain()) != &window_.page()) {
            const bool isStop = (at->focusPolicy() & Qt::TabFocus) && at->isEnabled() &&
                                at->isVisible() && window_.page().isAncestorOf(at) &&
                                !at->inherits("QLineEdit") && at->height() > 0;
            if (!isStop) {
                continue;
            }
            if (before && scrolledIn(at) == scrolledIn(before)) {
                const QRect next(at->mapTo(&window_, QPoint()), at->size());
                const QRect last(before->mapTo(&window_, QPoint()), before->size());
                const bool isUpward = next.bottom() < last.top() && next.left() < last.right();
                const bool isLeftward = next.right() < last.left() && next.top() <= last.bottom() &&
                                        next.bottom() >= last.top();
                EXPECT_FALSE(isUpward || isLeftward)
                    << rawValue(screen) << ": " << before->metaObject()->className() << " "
                    << utf8(before->accessibleName()) << " to " << at->metaObject()->className()
                    << " " << utf8(at->accessibleName());
            }
            before = at;
        }
    }
}

/// Which control has the focus is seen by looking at it.
TEST_F(Keyboard, ShowsTheFocusOnEveryControl) {
    state_.resetToSample();
    for (const StudioScreen screen : allStudioScreens()) {
        state_.selection.set(screen);
        QCoreApplication::processEvents();
        for (QWidget* widget : window_.findChildren<QWidget*>()) {
            const bool isStop = (widget->focusPolicy() & Qt::TabFocus) && widget->isEnabled() &&
                                widget->isVisible() && !widget->visibleRegion().isEmpty();
            if (!isStop || widget->inherits("QTextEdit") || widget->inherits("QLineEdit")) {
                continue;
            }
            window_.setFocus();
            const QImage without = window_.grab().toImage();
            widget->setFocus(Qt::TabFocusReason);
            EXPECT_NE(window_.grab().toImage(), without)
                << rawValue(screen) << ": " << widget->metaObject()->className() << " "
                << utf8(widget->accessibleName());
        }
    }
}

}  // namespace
}  // namespace sorvane
