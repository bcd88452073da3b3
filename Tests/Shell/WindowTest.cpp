#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <QTextEdit>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/ToJson.h"
#include "SorvaneMac/Shell/AutosaveSchedule.h"
#include "SorvaneMac/Shell/ProjectActions.h"
#include "Tests/Shell/WindowFixture.h"

namespace sorvane {
namespace {

using WindowTest = WindowFixture;

TEST_F(WindowTest, StartsWithTheStartPage) {
    EXPECT_TRUE(says("No dataset loaded"));
    EXPECT_TRUE(says("Import a file or create a blank grid"));
    std::vector<QString> cards;
    for (const QFrame* card : window_.page().findChildren<QFrame*>()) {
        cards.push_back(card->accessibleName());
    }
    for (const char* sentence : {"New Project: import a file or start with a blank spreadsheet",
                                 "Open Project: browse saved .svp projects on this Mac"}) {
        EXPECT_NE(std::find(cards.begin(), cards.end(), QString(sentence)), cards.end());
    }
}

TEST_F(WindowTest, ImportsADroppedFile) {
    drop(write("two.csv", "name,score\nAda,4\nBob,5\n"));
    EXPECT_EQ(state_.selection.get(), StudioScreen::instrumentMap);
    EXPECT_EQ(window_.windowTitle(), "two.csv[*] — Sorvane");
    EXPECT_TRUE(says("2 rows × 2 columns"));
}

TEST_F(WindowTest, TakesEveryFormatByDialogDropAndPaste) {
    const std::filesystem::path files = SORVANE_SOURCE_DIR "/Tests/Import/Files";
    for (const std::string format : {"*.csv", "*.tsv", "*.txt", "*.xlsx", "*.numbers", "*.sav",
                                     "*.dta", "*.svmm", "*.svmmfield"}) {
        const QString all = FileDialogs::dataFilter().section(";;", 0, 0);
        EXPECT_TRUE(all.contains(qtText(format + ' ')) || all.contains(qtText(format + ')')))
            << format;
    }
    drop(files / "made_raw_labels.sav");
    EXPECT_EQ(state_.dataset().name, "made_raw_labels.sav");
    auto* copied = new QMimeData;
    copied->setUrls({QUrl::fromLocalFile(fromPath(files / "haven_tagged-na-int.dta"))});
    application_.clipboard()->setMimeData(copied);
    pasteFromDialog(&window_, window_.workspace());
    EXPECT_EQ(state_.dataset().name, "haven_tagged-na-int.dta");
    window_.workspace().dialogs.openDataFile = [&](QWidget*) {
        return std::optional(files / "readxl_inlineStr2.xlsx");
    };
    importFromDialog(&window_, window_.workspace());
    EXPECT_EQ(state_.dataset().name, "readxl_inlineStr2.xlsx — Requirements");
    show(StudioScreen::importData);
    EXPECT_TRUE(says("CSV, TSV, Excel (.xlsx), SPSS (.sav), or Stata (.dta)."));
}

TEST_F(WindowTest, PressesTheWayOutOfACautionAboveATable) {
    drop(std::filesystem::path(SORVANE_SOURCE_DIR "/Tests/Import/Files") /
         "made_raw_uncompressed_sysmis.sav");
    for (const StudioScreen screen : {StudioScreen::instrumentMap, StudioScreen::variableTypes}) {
        show(screen);
        QPushButton* way = button("Set implausible values to missing");
        ASSERT_TRUE(way);
        way->click();
        settle();
        EXPECT_EQ(state_.dataset().rows.cell(1, 0), "");
        EXPECT_TRUE(state_.undoLastDataChange());
    }
}

TEST_F(WindowTest, ShowsAFailedImportAndKeepsTheTable) {
    state_.resetToSample();
    drop(write("picture.webp", "RIFF"));
    ASSERT_TRUE(state_.data.importError.get());
    EXPECT_TRUE(says(qtText(*state_.data.importError.get())));
    EXPECT_EQ(state_.dataset().rowCount(), 300);
    const QString error = qtText(*state_.data.importError.get());
    drop(write("good.csv", "a,b\n1,2\n"));
    EXPECT_FALSE(says(error));
}

TEST_F(WindowTest, AsksBeforeAnImportClearsTheReport) {
    state_.resetToSample();
    state_.assembleReport();
    const std::filesystem::path file = write("new.csv", "a,b\n1,2\n");
    answer_ = false;
    drop(file);
    EXPECT_EQ(state_.dataset().rowCount(), 300);
    ASSERT_EQ(asked_.size(), 1U);
    EXPECT_EQ(asked_[0],
              "Import new data?\nImporting a new dataset clears the current report and staged "
              "findings. Save the report first if you want to keep it.");
    answer_ = true;
    drop(file);
    EXPECT_EQ(state_.dataset().rowCount(), 1);
}

TEST_F(WindowTest, AsksOnEveryWayToReplaceTheTableOfAReport) {
    state_.resetToSample();
    state_.assembleReport();
    answer_ = false;
    show(StudioScreen::importData);
    button("Open the sample study")->click();
    for (QPushButton* each : window_.findChildren<QPushButton*>()) {
        if (each->text() == "Create blank grid") {
            each->click();
        }
    }
    EXPECT_EQ(asked_.size(), 2U);
    EXPECT_TRUE(state_.reportRTFData.get());
    EXPECT_EQ(state_.dataset().rowCount(), 300);
}

TEST_F(WindowTest, AsksBeforeClosingLosesWork) {
    window_.show();
    state_.resetToSample();
    EXPECT_TRUE(window_.close());
    EXPECT_TRUE(asked_.empty());
    window_.show();
    show(StudioScreen::scalesReliability);
    EXPECT_FALSE(window_.isWindowModified());
    button("Add to report")->click();
    settle();
    EXPECT_TRUE(window_.isWindowModified());
    saveAnswer_ = SaveAnswer::cancel;
    EXPECT_FALSE(window_.close());
    saveAnswer_ = SaveAnswer::discard;
    EXPECT_TRUE(window_.close());
    window_.show();
    saveAnswer_ = SaveAnswer::save;
    EXPECT_TRUE(window_.close());
    EXPECT_EQ(asked_, std::vector<std::string>(3, "save SampleEIStudy.csv"));
    EXPECT_TRUE(read("SampleEIStudy.csv.svp").startsWith("{\n  \"createdAt\""));
    window_.show();
    settle();
    EXPECT_EQ(window_.windowTitle(), "SampleEIStudy.csv.svp[*] — Sorvane");
    EXPECT_FALSE(window_.isWindowModified());
    EXPECT_TRUE(window_.close());
}

TEST_F(WindowTest, OpensADroppedProjectAndOffersItNextTime) {
    state_.resetToSample();
    ASSERT_TRUE(state_.saveProject(folder_ / "mine & yours.svp"));
    state_.createBlankDataset("Grid", 2, 2, std::nullopt);
    saveAnswer_ = SaveAnswer::cancel;
    drop(folder_ / "mine & yours.svp");
    EXPECT_EQ(state_.dataset().rowCount(), 2);
    saveAnswer_ = SaveAnswer::discard;
    drop(folder_ / "mine & yours.svp");
    EXPECT_EQ(state_.dataset().rowCount(), 300);
    EXPECT_TRUE(says("Opened mine & yours.svp."));
    drop(write("broken.SVP", "{"));
    EXPECT_TRUE(
        says("Could not read broken.SVP: This is no project, or it is damaged: it breaks off at "
             "byte 1."));
    EXPECT_EQ(state_.dataset().rowCount(), 300);

    state_.data.dataset.replace(emptyDataset("No dataset"));
    show(StudioScreen::overview);
    ASSERT_TRUE(button("mine && yours.svp"));
    button("mine && yours.svp")->click();
    settle();
    EXPECT_EQ(state_.dataset().rowCount(), 300);
}

TEST_F(WindowTest, OffersTheWorkOfTheLastSession) {
    state_.keepAutosaveIn(folder_ / "support");
    {
        const AutosaveSchedule schedule(state_);
        state_.resetToSample();
        settle();
        state_.finishAutosave();
        EXPECT_TRUE(state_.hasAutosave());
        state_.addToReport({.id = Uuid::fresh(), .title = "Finding", .apaSummary = "It was so."});
    }
    for (const bool resumes : {true, false}) {
        StudioState next(std::filesystem::path(SORVANE_SOURCE_DIR) / "Resources");
        StudioScreens screens(next);
        next.keepAutosaveIn(folder_ / "support");
        Workspace workspace{.state = next, .screens = screens};
        workspace.confirm = window_.workspace().confirm;
        answer_ = resumes;
        offerLastSession(nullptr, workspace);
        EXPECT_EQ(asked_.back(),
                  "Resume your last session?\nYour previous work was saved automatically. Resume "
                  "where you left off, or start fresh.");
        EXPECT_EQ(next.reportItems->size(), resumes ? 1U : 0U);
        EXPECT_EQ(next.hasAutosave(), resumes);
    }
}

TEST_F(WindowTest, OffersTheFilesImportedLast) {
    const std::filesystem::path first = write("first.csv", "a,b\n1,2\n");
    drop(first);
    drop(write("second & third.csv", "a,b\n1,2\n3,4\n"));
    drop(write("broken.csv", "a,b\n\"1,2\n"));
    QMenu* file = window_.menuBar()->actions().front()->menu();
    emit file->aboutToShow();
    QStringList labels;
    for (const QMenu* menu : file->findChildren<QMenu*>()) {
        if (menu->title() == "Import &Recent") {
            for (const QAction* action : menu->actions()) {
                labels << action->text();
            }
            menu->actions().back()->trigger();
        }
    }
    EXPECT_EQ(labels, (QStringList{"second && third.csv", "first.csv"}));
    EXPECT_EQ(state_.dataset().rowCount(), 1);
}

TEST_F(WindowTest, RecallsTheWindowOfTheLastSession) {
    state_.resetToSample();
    settle();
    window_.setInspectorShows(false);
    window_.setScale(1.25);
    const WindowMemory memory = fromJson<WindowMemory>(toJson(window_.memory()));
    MainWindow next(state_, screens_);
    next.recall(memory);
    EXPECT_FALSE(next.inspectorShows());
    EXPECT_EQ(next.scale(), 1.25);
    EXPECT_EQ(next.size(), window_.size());
    next.setScale(1.0);
}

TEST_F(WindowTest, HasNoInspectorInItsLabForm) {
    state_.resetToSample();
    settle();
    MainWindow lab(state_, screens_, WindowForm::splitLab);
    lab.setInspectorShows(true);
    EXPECT_FALSE(lab.inspectorShows());
    EXPECT_EQ(lab.windowTitle(), window_.windowTitle());
}

TEST_F(WindowTest, AToggledItemChangesTheTableAndKeepsTheForm) {
    state_.resetToSample();
    settle();
    ASSERT_TRUE(tableText().contains("sr2"));
    QListView* list = nullptr;
    for (QListView* each : window_.findChildren<QListView*>()) {
        if (each->isVisibleTo(&window_) && each->accessibleName().startsWith("ITEMS")) {
            list = each;
        }
    }
    ASSERT_TRUE(list);
    const QModelIndexList found = list->model()->match(list->model()->index(0, 0), Qt::DisplayRole,
                                                       "sr2", 1, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    list->model()->setData(found.front(), Qt::Unchecked, Qt::CheckStateRole);
    settle();
    EXPECT_FALSE(tableText().contains("sr2"));
    EXPECT_EQ(found.front().data(Qt::CheckStateRole).toInt(), Qt::Unchecked);
    EXPECT_TRUE(list->isVisibleTo(&window_));
}

TEST_F(WindowTest, StagesAFindingOnceWithItsFigure) {
    state_.resetToSample();
    settle();
    QPushButton* add = button("Add to report");
    ASSERT_TRUE(add);
    add->click();
    settle();
    EXPECT_EQ(add->text(), "In report");
    EXPECT_FALSE(add->isEnabled());
    ASSERT_EQ(state_.reportItems->size(), 1U);
    EXPECT_TRUE(state_.reportItems->front().figure.has_value());
    state_.scale.constructName.set("Emotional intelligence");
    settle();
    EXPECT_TRUE(button("Add to report"));
}

TEST_F(WindowTest, AssemblesEditsAndExportsTheReport) {
    state_.resetToSample();
    settle();
    window_.page().stageFirst();
    window_.assembleReport();
    settle();
    auto* editor = window_.page().findChild<QTextEdit*>();
    ASSERT_TRUE(editor->toPlainText().contains("Reliability"));
    editor->moveCursor(QTextCursor::End);
    editor->insertPlainText("A sentence of mine.");
    button("Word…")->click();
    button("Markdown…")->click();
    EXPECT_TRUE(read("Sorvane-Report.docx").startsWith("PK"));
    EXPECT_TRUE(read("Sorvane-Report.md").contains("A sentence of mine."));

    answer_ = false;
    button("Assemble again")->click();
    settle();
    EXPECT_TRUE(editor->toPlainText().contains("A sentence of mine."));
    answer_ = true;
    button("Assemble again")->click();
    settle();
    EXPECT_FALSE(editor->toPlainText().contains("A sentence of mine."));
    EXPECT_EQ(asked_.size(), 2U);
}

TEST_F(WindowTest, CopiesATableAsHtmlAndText) {
    state_.resetToSample();
    settle();
    button("Copy table")->click();
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_TRUE(copied->html().contains("<table"));
    EXPECT_TRUE(copied->text().contains("sa1\t"));
    button("Copy APA text")->click();
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("A reliability analysis"));
}

TEST_F(WindowTest, TypesIntoABlankGridAndCopiesFromIt) {
    state_.createBlankDataset("Mine", 3, 2, std::nullopt);
    settle();
    auto* grid = window_.page().findChild<QTableView*>();
    QAbstractItemModel& cells = *grid->model();
    cells.setData(cells.index(0, 0), "4", Qt::EditRole);
    cells.setData(cells.index(1, 1), "a b", Qt::EditRole);
    settle();
    EXPECT_EQ(state_.dataset().rows.cell(0, 0), "4");
    EXPECT_EQ(cells.index(1, 1).data().toString(), "a b");
    window_.show();
    window_.activateWindow();
    settle();
    grid->setFocus();
    grid->selectAll();
    EXPECT_TRUE(window_.page().copySelection());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "4\t\n\ta b\n\t\n");
}

TEST_F(WindowTest, GivesSelectedVariablesARole) {
    state_.resetToSample();
    show(StudioScreen::variableTypes);
    window_.page().findChild<QTableView*>()->selectRow(1);
    button("Independent / group")->click();
    settle();
    EXPECT_EQ(state_.dataset().variables[1].assignedType, VariableKind::grouping);
}

TEST_F(WindowTest, CoversTheScreenWhileComputing) {
    state_.computingLabel.set("Running multiple imputation…");
    state_.computingCancellable.set(true);
    state_.isComputing.set(true);
    settle();
    EXPECT_TRUE(says("Running multiple imputation…"));
    for (const QAction* menu : window_.menuBar()->actions()) {
        EXPECT_FALSE(menu->isEnabled()) << utf8(menu->text());
    }
    for (QPushButton* each : window_.findChildren<QPushButton*>("", Qt::FindChildrenRecursively)) {
        if (each->text() == "Cancel") {
            each->click();
        }
    }
    settle();
    EXPECT_FALSE(state_.isComputing.get());
    EXPECT_FALSE(says("Running multiple imputation…"));
}

TEST_F(WindowTest, NamesEveryControlOnEveryScreen) {
    state_.resetToSample();
    for (const StudioScreen screen : allStudioScreens()) {
        for (const InspectorPane pane :
             {InspectorPane::setup, InspectorPane::guide, InspectorPane::notes}) {
            state_.inspectorPane.set(pane);
            show(screen);
            for (const QWidget* widget : window_.findChildren<QWidget*>()) {
                const auto* pressed = qobject_cast<const QAbstractButton*>(widget);
                const bool isPart = widget->objectName().startsWith("qt_") ||
                                    qobject_cast<const QLineEdit*>(widget) ||
                                    widget->parentWidget()->inherits("QAbstractItemView");
                if (!(widget->focusPolicy() & Qt::TabFocus) || isPart ||
                    !widget->isVisibleTo(&window_) || widget->inherits("QTabBar")) {
                    continue;
                }
                EXPECT_TRUE(!widget->accessibleName().isEmpty() ||
                            (pressed && !pressed->text().isEmpty()))
                    << rawValue(screen) << ": " << widget->metaObject()->className();
            }
        }
    }
}

TEST_F(WindowTest, KeepsItsStateThroughAppearanceAndSize) {
    state_.resetToSample();
    settle();
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (const Appearance appearance : {Appearance::dark, Appearance::light}) {
            window_.setAppearance(appearance);
            window_.setScale(scale);
            settle();
            EXPECT_TRUE(button("Add to report"));
            EXPECT_TRUE(tableText().contains("sa1"));
        }
    }
    window_.setScale(1.0);
}

}  // namespace
}  // namespace sorvane
