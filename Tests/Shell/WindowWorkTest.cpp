#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QTextEdit>

#include "SorvaneMac/Report/RichDocument.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "Tests/Shell/WindowFixture.h"

namespace sorvane {
namespace {

/// What someone does with the mouse and the menus from a table to a report.
class WindowWork : public WindowFixture {
protected:
    QAction* menuItem(const QString& label) { return itemIn(window_.menuBar()->actions(), label); }
    static QAction* itemIn(const QList<QAction*>& actions, const QString& label) {
        for (QAction* each : actions) {
            QAction* inside = each->menu() ? itemIn(each->menu()->actions(), label) : nullptr;
            if (inside || each->text().remove('&') == label) {
                return inside ? inside : each;
            }
        }
        return nullptr;
    }
    void click(const QString& label) {
        QPushButton* pressed = anyButton(label);
        ASSERT_TRUE(pressed) << utf8(label);
        ASSERT_TRUE(pressed->isEnabled()) << utf8(label);
        QTest::mouseClick(pressed, Qt::LeftButton);
        settle();
    }
    /// One of the screen or of the inspector beside it.
    QPushButton* anyButton(const QString& label) {
        for (QPushButton* each : window_.findChildren<QPushButton*>()) {
            if ((each->text() == label || each->accessibleName() == label) &&
                each->isVisibleTo(&window_)) {
                return each;
            }
        }
        return nullptr;
    }
    QComboBox* picker(const QString& label) {
        for (QComboBox* each : window_.findChildren<QComboBox*>()) {
            if (each->accessibleName() == label && each->isVisibleTo(&window_)) {
                return each;
            }
        }
        return nullptr;
    }
    void pick(const QString& label, const QString& choice) {
        QComboBox* box = picker(label);
        ASSERT_TRUE(box) << utf8(label);
        const int index = box->findText(choice);
        ASSERT_GE(index, 0) << utf8(choice);
        box->setCurrentIndex(index);
        emit box->activated(index);
        settle();
    }
    void paste() {
        state_.importPastedData(
            "site,score,later\nnorth,3.5,4\nnorth,2.5,4.5\nnorth,4.5,4\nnorth,5,6.5\n"
            "south,1.5,2\nsouth,2,3.5\nsouth,3,3.5\nsouth,4,5.5\n");
        state_.assignVariable(state_.dataset().variable("site")->id, VariableKind::grouping);
        state_.assignVariable(state_.dataset().variable("score")->id, VariableKind::outcome);
        settle();
    }
    /// Stages a finding of the two means and shows the page of the report.
    void stageTwo() {
        paste();
        show(StudioScreen::inferential);
        click("Run t-test");
        click("Add to report");
        show(StudioScreen::descriptives);
        click("Add to report");
        show(StudioScreen::findings);
    }
    QTextEdit& editor() { return *window_.page().findChild<QTextEdit*>(); }
};

TEST_F(WindowWork, PicksRunsAndStagesAComparison) {
    paste();
    show(StudioScreen::inferential);
    pick("Outcome", "later");
    pick("Grouping", "site");
    EXPECT_FALSE(button("Add to report"));
    click("Run t-test");
    EXPECT_TRUE(says("Welch's t-test of later by site"));
    EXPECT_TRUE(tableText().contains("north"));
    click("Add to report");
    ASSERT_EQ(state_.reportItems->size(), 1U);
    EXPECT_EQ(state_.reportItems->front().title, "t-test: later by site");
    EXPECT_TRUE(state_.reportItems->front().figure);

    pick("Outcome", "score");
    EXPECT_TRUE(says("Welch's t-test of later by site")) << "a result stands until the next run";
    EXPECT_FALSE(button("Add to report"));
    click("Run t-test");
    EXPECT_TRUE(says("Welch's t-test of score by site"));
    EXPECT_TRUE(button("Add to report"));
}

TEST_F(WindowWork, SaysWhyItCannotRun) {
    paste();
    show(StudioScreen::inferential);
    pick("Group 2", "north");
    EXPECT_TRUE(says("Groups must differ"));
    ASSERT_TRUE(anyButton("Run t-test"));
    EXPECT_FALSE(anyButton("Run t-test")->isEnabled());
    EXPECT_FALSE(button("Add to report"));
    pick("Group 2", "south");
    EXPECT_TRUE(anyButton("Run t-test")->isEnabled());
}

TEST_F(WindowWork, SaysLastWhatHappenedLast) {
    paste();
    EXPECT_FALSE(state_.saveProject(folder_ / "nowhere" / "study.svp"));
    settle();
    EXPECT_TRUE(says("Save failed: No such file or directory."));
    ASSERT_TRUE(state_.saveMethodFile(folder_));
    settle();
    EXPECT_FALSE(says("Save failed: No such file or directory."));
    EXPECT_EQ(state_.projectError.get(), std::nullopt);
    EXPECT_TRUE(says(qtText(*state_.saveStatusMessage.get())));
    state_.exportDatasetCSV(folder_ / "table.csv");
    settle();
    EXPECT_TRUE(says(qtText(*state_.projectMessage.get())));
}

TEST_F(WindowWork, RemovesAFindingAndClearsTheRest) {
    stageTwo();
    EXPECT_TRUE(says("t-test: score by site"));
    click("Remove t-test: score by site");
    EXPECT_FALSE(says("t-test: score by site"));
    ASSERT_EQ(state_.reportItems->size(), 1U);
    EXPECT_EQ(state_.reportItems->front().title, "Descriptives: score");
    answer_ = false;
    click("Clear");
    EXPECT_EQ(state_.reportItems->size(), 1U);
    answer_ = true;
    click("Clear");
    EXPECT_TRUE(state_.reportItems->empty());
    EXPECT_FALSE(anyButton("Clear")->isEnabled());
    EXPECT_FALSE(anyButton("Assemble")->isEnabled());
    EXPECT_EQ(asked_.front(),
              "Clear the report?\nThe staged findings and the assembled document are removed.");
}

TEST_F(WindowWork, EditsTheReportAndTakesItBack) {
    stageTwo();
    click("Assemble");
    EXPECT_TRUE(asked_.empty()) << "nothing is lost yet";
    EXPECT_FALSE(editor().document()->isUndoAvailable());
    const QString assembled = editor().toPlainText();
    EXPECT_LT(assembled.indexOf("t-test: score by site"), assembled.indexOf("Descriptives: score"));
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), " Mine.");
    EXPECT_TRUE(editor().toPlainText().endsWith(" Mine."));
    ASSERT_TRUE(editor().find("statistics for", QTextDocument::FindBackward));
    editor().moveCursor(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    editor().copy();
    const QString copied = QGuiApplication::clipboard()->text();
    EXPECT_FALSE(copied.contains(QChar(0x2060))) << utf8(copied);
    EXPECT_TRUE(copied.contains(" = ")) << utf8(copied);
    while (editor().document()->isUndoAvailable()) {
        editor().undo();
    }
    EXPECT_EQ(editor().toPlainText(), assembled);
    QTest::keyClicks(&editor(), "Kept. ");
    show(StudioScreen::descriptives);
    window_.workspace().commitEdits();
    show(StudioScreen::findings);
    EXPECT_TRUE(editor().toPlainText().contains("Kept. "));
    EXPECT_TRUE(window_.isWindowModified());
}

TEST_F(WindowWork, KeepsTheReportClearedThoughAnEditWasUnderWay) {
    stageTwo();
    click("Assemble");
    QTest::keyClicks(&editor(), "Mine. ");
    state_.clearReport();
    window_.workspace().commitEdits();
    settle();
    EXPECT_FALSE(state_.reportRTFData.get());
    EXPECT_TRUE(says("The report appears here once it is assembled."));
}

TEST_F(WindowWork, CopiesWhicheverTableIsChosen) {
    paste();
    show(StudioScreen::inferential);
    pick("Test", "One-way ANOVA");
    click("Run ANOVA");
    QMenu* menu = button("Copy table")->menu();
    ASSERT_TRUE(menu);
    const std::pair<const char*, const char*> tables[] = {
        {"Main table", "Between Groups"}, {"Table 2", "Std. Deviation"}, {"Table 3", "Adj. p"}};
    ASSERT_EQ(menu->actions().size(), 3);
    for (qsizetype at = 0; at < 3; ++at) {
        EXPECT_EQ(menu->actions()[at]->text(), tables[at].first);
        menu->actions()[at]->trigger();
        const QString copied = QGuiApplication::clipboard()->text();
        for (const auto& [name, piece] : tables) {
            EXPECT_EQ(copied.contains(piece), piece == tables[at].second) << name << piece;
        }
    }
}

TEST_F(WindowWork, ShowsThePageOfAReportWithoutAScrollBarAcross) {
    state_.resetToSample();
    show(StudioScreen::scalesReliability);
    window_.page().stageFirst();
    window_.setAttribute(Qt::WA_DontShowOnScreen);
    window_.show();
    window_.assembleReport();
    settle();
    settle();
    EXPECT_EQ(window_.size(), QSize(1280, 800));
    EXPECT_FALSE(window_.inspectorShows());
    EXPECT_TRUE(editor().verticalScrollBar()->isVisible());
    EXPECT_FALSE(editor().horizontalScrollBar()->isVisible());
    window_.setInspectorShows(true);
    settle();
    settle();
    EXPECT_FALSE(editor().horizontalScrollBar()->isVisible());
}

TEST_F(WindowWork, ShowsAWideTableSmallerThanItIs) {
    ReportItem item{.title = "Sums", .apaSummary = "Large numbers.", .table = ReportTable()};
    item.table->headers = {"a", "b", "c", "d", "e", "f", "g"};
    item.table->rows.assign(3, std::vector<std::string>(7, "12345678901234.56"));
    state_.addToReport(item);
    show(StudioScreen::findings);
    window_.setAttribute(Qt::WA_DontShowOnScreen);
    window_.show();
    click("Assemble");
    settle();
    EXPECT_FALSE(editor().horizontalScrollBar()->isVisible());
    const RichDocument assembled = *decode(*state_.reportRTFData.get());
    QTest::keyClicks(&editor(), "x");
    window_.workspace().commitEdits();
    RichDocument edited = *decode(*state_.reportRTFData.get());
    std::string& first = edited.paragraphs.front().runs.front().text;
    ASSERT_TRUE(first.starts_with('x'));
    first.erase(0, 1);
    ASSERT_EQ(edited.paragraphs.size(), assembled.paragraphs.size());
    for (std::size_t at = 0; at < edited.paragraphs.size(); ++at) {
        EXPECT_EQ(edited.paragraphs[at].runs, assembled.paragraphs[at].runs) << at;
    }
}

TEST_F(WindowWork, ShowsARefusalUntilItIsDismissed) {
    paste();
    drop(write("header.csv", "a,b\n"));
    const QString refusal =
        "Could not import header.csv: The file has 2 column headers but no data rows. Export the "
        "worksheet as a normal CSV with one header row followed by respondent rows.";
    EXPECT_TRUE(says(refusal));
    show(StudioScreen::descriptives);
    EXPECT_TRUE(says(refusal)) << "on whatever screen";
    click("Dismiss");
    EXPECT_FALSE(says(refusal));
    EXPECT_FALSE(anyButton("Dismiss"));
    EXPECT_EQ(state_.dataset().rowCount(), 8);
}

TEST_F(WindowWork, AsksBeforeAnUndoThatTakesTypedCellsWithIt) {
    state_.createBlankDataset("Mine", 4, 2, std::nullopt);
    settle();
    EXPECT_FALSE(menuItem("Undo Data Change")->isEnabled());
    ASSERT_TRUE(state_.setDatasetSize(2, 2));
    state_.updateDatasetCell(0, 0, "5");
    settle();
    QAction* undo = menuItem("Undo the removal of 2 row(s)");
    ASSERT_TRUE(undo && undo->isEnabled());
    answer_ = false;
    undo->trigger();
    EXPECT_EQ(state_.dataset().rowCount(), 2);
    ASSERT_EQ(asked_.size(), 1U);
    EXPECT_TRUE(asked_.front().starts_with("Undo the data change?\n")) << asked_.front();
    answer_ = true;
    undo->trigger();
    settle();
    EXPECT_EQ(state_.dataset().rowCount(), 4);
    EXPECT_EQ(state_.dataset().rows.cell(0, 0), "");
    EXPECT_FALSE(undo->isEnabled());
}

TEST_F(WindowWork, OffersInItsMenusOnlyWhatCanBeDone) {
    const auto enabled = [this](const QString& label) {
        settle();
        QAction* item = menuItem(label);
        return item && item->isEnabled();
    };
    for (const char* label : {"Save Project", "Export Dataset…", "Add to Report", "Assemble Report",
                              "PDF…", "Undo Data Change", "Inspector"}) {
        EXPECT_FALSE(enabled(label)) << label;
    }
    paste();
    for (const char* label : {"Save Project", "Export Dataset…", "Add to Report", "Inspector"}) {
        EXPECT_TRUE(enabled(label)) << label;
    }
    EXPECT_FALSE(enabled("Assemble Report"));
    stageTwo();
    EXPECT_TRUE(enabled("Assemble Report"));
    EXPECT_TRUE(enabled("PDF…"));
    state_.clearReport();
    EXPECT_FALSE(enabled("Assemble Report"));
}

TEST_F(WindowWork, SavesWhereItWasSavedBefore) {
    paste();
    menuItem("Save Project")->trigger();
    settle();
    EXPECT_EQ(window_.windowTitle(), "Pasted data.svp[*] — Sorvane");
    EXPECT_TRUE(says("Saved Pasted data.svp."));
    window_.workspace().dialogs.save = [](QWidget*, const SaveRequest&) {
        ADD_FAILURE() << "the place is known";
        return std::optional<std::filesystem::path>();
    };
    state_.researcherNotes.set({{"overview", "Ask again."}});
    settle();
    EXPECT_TRUE(window_.isWindowModified());
    menuItem("Save Project")->trigger();
    settle();
    EXPECT_FALSE(window_.isWindowModified()) << "the mark goes though the message is the same";
    EXPECT_FALSE(state_.hasUnsavedWork());
}

TEST_F(WindowWork, ACancelledSaveKeepsTheWindowOpen) {
    paste();
    state_.researcherNotes.set({{"overview", "Mine."}});
    window_.show();
    saveAnswer_ = SaveAnswer::save;
    window_.workspace().dialogs.save = [](QWidget*, const SaveRequest&) {
        return std::optional<std::filesystem::path>();
    };
    EXPECT_FALSE(window_.close());
    EXPECT_TRUE(window_.isVisible());
    EXPECT_TRUE(state_.hasUnsavedWork());
}

TEST_F(WindowWork, TakesNoDropWhileItComputes) {
    paste();
    state_.isComputing.set(true);
    settle();
    QMimeData dropped;
    dropped.setUrls({QUrl::fromLocalFile("/data/other.csv")});
    QDragEnterEvent enter(QPoint(600, 400), Qt::CopyAction, &dropped, Qt::LeftButton,
                          Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&window_, &enter);
    EXPECT_FALSE(enter.isAccepted());
    state_.isComputing.set(false);
}

TEST_F(WindowWork, FollowsTheChosenLookAndSize) {
    paste();
    menuItem("Dark")->trigger();
    settle();
    EXPECT_TRUE(Theme::isDark());
    EXPECT_TRUE(menuItem("Dark")->isChecked());
    EXPECT_FALSE(menuItem("Light")->isChecked());
    const int before = window_.fontMetrics().height();
    for (int step = 0; step < 8; ++step) {
        menuItem("Larger")->trigger();
    }
    EXPECT_EQ(window_.scale(), 2.0);
    EXPECT_GT(window_.fontMetrics().height(), before * 3 / 2);
    menuItem("Normal Size")->trigger();
    menuItem("Smaller")->trigger();
    EXPECT_EQ(window_.scale(), 1.0);
    menuItem("Light")->trigger();
    settle();
    EXPECT_FALSE(Theme::isDark());
    EXPECT_EQ(state_.dataset().rowCount(), 8);
}

TEST_F(WindowWork, KeepsAnEditThroughAChangeOfLook) {
    stageTwo();
    click("Assemble");
    editor().moveCursor(QTextCursor::End);
    QTest::keyClicks(&editor(), " Mine.");
    window_.setAppearance(Appearance::dark);
    settle();
    EXPECT_TRUE(editor().toPlainText().endsWith(" Mine."));
    window_.setAppearance(Appearance::light);
}

TEST_F(WindowWork, TellsTheStateOfTheDataBelow) {
    EXPECT_TRUE(says("No dataset loaded"));
    paste();
    EXPECT_TRUE(says("8 rows × 3 columns"));
    EXPECT_FALSE(says("Weights on"));
    screens_.fields.survey.surveyWeightsActive.set(true);
    settle();
    EXPECT_TRUE(says("Weights on"));
}

}  // namespace
}  // namespace sorvane
