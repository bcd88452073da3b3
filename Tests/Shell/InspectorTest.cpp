#include <algorithm>
#include <filesystem>

#include <QAction>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/UserGuideScreen.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/MainWindow.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

class Inspector : public ::testing::Test {
protected:
    Inspector()
        : application_(offscreenApplication()),
          state_(std::filesystem::path(SORVANE_SOURCE_DIR) / "Resources"),
          screens_(state_),
          window_(state_, screens_) {
        window_.workspace().dialogs.save = [this](QWidget*, const SaveRequest& request) {
            return std::optional(folder_ / request.suggestedName);
        };
        std::filesystem::create_directories(folder_);
        state_.resetToSample();
    }
    ~Inspector() override { std::filesystem::remove_all(folder_); }

    void show(InspectorPane pane, InspectorTab tab = InspectorTab::whyNative) {
        state_.inspectorPane.set(pane);
        state_.inspectorTab.set(tab);
        settle();
    }
    void settle() { QCoreApplication::processEvents(); }

    /// The visible label that begins so; empty without one.
    QString label(const QString& beginning) {
        for (const QLabel* each : window_.findChildren<QLabel*>()) {
            const QString text = Labels::shown(*each);
            if (each->isVisibleTo(&window_) && text.startsWith(beginning)) {
                return text;
            }
        }
        return {};
    }
    QPushButton* button(const QString& text) {
        for (QPushButton* each : window_.findChildren<QPushButton*>()) {
            if (each->text() == text && each->isVisibleTo(&window_)) {
                return each;
            }
        }
        return nullptr;
    }

    QApplication& application_;
    std::filesystem::path folder_ = std::filesystem::temp_directory_path() / Uuid::fresh().text();
    StudioState state_;
    StudioScreens screens_;
    MainWindow window_;
};

TEST_F(Inspector, KeepsARecordWhileItIsLookedAtUnchanged) {
    show(InspectorPane::guide, InspectorTab::reproduce);
    const QString shown = label("Saved as ");
    ASSERT_TRUE(shown.startsWith("Saved as scale_reliability_"));
    state_.saveStatusMessage.set("Saved.");
    settle();
    EXPECT_EQ(label("Saved as "), shown);

    state_.scale.reverseCodedItemNames.set({"sa1"});
    settle();
    const QString changed = label("Saved as ");
    EXPECT_NE(changed, shown);
    show(InspectorPane::guide, InspectorTab::coach);
    EXPECT_EQ(label("Saved as "), "");
    show(InspectorPane::guide, InspectorTab::reproduce);
    EXPECT_NE(label("Saved as "), changed);
}

TEST_F(Inspector, SavesTheRecordThatItShows) {
    show(InspectorPane::guide, InspectorTab::reproduce);
    const QString name = label("Saved as ").mid(9);
    button("Save method file…")->click();
    settle();
    EXPECT_TRUE(std::filesystem::exists(folder_ / utf8(name)));
    EXPECT_EQ(state_.saveStatusMessage.get(), "Saved " + utf8(name) + ".");
    EXPECT_EQ(label("Saved as ").mid(9), name);
}

TEST_F(Inspector, FollowsTheScreenInEachTabOfTheGuide) {
    for (const InspectorTab tab : {InspectorTab::whyNative, InspectorTab::coach}) {
        const QString heading = tab == InspectorTab::coach ? "LOOK FIRST AT" : "WHAT IT ANSWERS";
        state_.selection.set(StudioScreen::correlation);
        show(InspectorPane::guide, tab);
        EXPECT_EQ(label(heading), heading);
        EXPECT_EQ(label("How consistently") + label("Alpha beside"), "");
        state_.selection.set(StudioScreen::scalesReliability);
        settle();
        EXPECT_NE(label("How consistently") + label("Alpha beside"), "");
    }
}

TEST_F(Inspector, GathersTheNotesOfAllScreens) {
    show(InspectorPane::guide, InspectorTab::notes);
    EXPECT_NE(label("No notes yet."), "");
    state_.researcherNotes.set({{"correlation", "Ask about the outlier."}, {"regression", " "}});
    state_.stageResearcherNote(StudioScreen::correlation);
    settle();
    EXPECT_EQ(label("In the report"), "In the report");
    EXPECT_FALSE(button("Regression"));
    button("Correlation")->click();
    settle();
    EXPECT_EQ(state_.selection.get(), StudioScreen::correlation);
    EXPECT_EQ(state_.inspectorPane.get(), InspectorPane::notes);
    EXPECT_FALSE(button("Note is in the report")->isEnabled());
}

TEST_F(Inspector, SavesTheRecordOfTheAppendix) {
    state_.selection.set(StudioScreen::technicalAppendix);
    show(InspectorPane::setup);
    const QString name = label("project_review_");
    button("Save method file…")->click();
    settle();
    EXPECT_TRUE(std::filesystem::exists(folder_ / utf8(name)));
    EXPECT_EQ(label("project_review_"), name);
}

TEST_F(Inspector, FollowsTheLinksOfAPage) {
    state_.selection.set(StudioScreen::overview);
    settle();
    button("Describe a variable")->click();
    settle();
    EXPECT_EQ(state_.selection.get(), StudioScreen::descriptives);
    EXPECT_NE(label("Descriptives"), "");
}

TEST_F(Inspector, NamesInTheGuideTheKeysThatTheMenusHave) {
    std::vector<QKeySequence> known;
    for (const QAction* action : window_.findChildren<QAction*>()) {
        known.push_back(action->shortcut());
    }
    for (const UserGuideScreen::Keys& each : UserGuideScreen::keys()) {
        for (const QString& keys : qtText(each.keys).split(", ")) {
            EXPECT_NE(std::find(known.begin(), known.end(), QKeySequence(keys)), known.end())
                << utf8(keys);
        }
    }
}

}  // namespace
}  // namespace sorvane
