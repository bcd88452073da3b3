#include <QClipboard>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

#include "Tests/Shell/WindowFixture.h"

namespace sorvane {
namespace {

/// The table as it is worked in with keys alone.
class GridKeys : public WindowFixture {
protected:
    void open(const std::function<void()>& load) {
        window_.show();
        window_.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
        load();
        show(StudioScreen::dataPreview);
        goTo(0, 0);
    }
    void openTowns() {
        open([this] { state_.importPastedData("town,n\nBern,1\nBasel,2\nThun,3\nBERN,4\n"); });
    }
    void openBlank() {
        open([this] { state_.createBlankDataset("Mine", 3, 2, std::nullopt); });
    }
    QTableView& grid() { return *window_.page().findChild<QTableView*>(); }
    void goTo(int row, int column) {
        grid().setFocus();
        grid().setCurrentIndex(grid().model()->index(row, column));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(window_.focusWidget(), key, modifiers);
        settle();
    }
    void type(const QString& text) {
        for (const QChar each : text) {
            QTest::keyClick(window_.focusWidget(), each.toLatin1());
            settle();
        }
    }
    QLineEdit* field(const QString& name) {
        for (QLineEdit* each : window_.page().findChildren<QLineEdit*>()) {
            if (each->accessibleName() == name) {
                return each;
            }
        }
        return nullptr;
    }
    std::pair<int, int> place() {
        return {grid().currentIndex().row(), grid().currentIndex().column()};
    }
    std::string cell(std::size_t row, std::size_t column) {
        return std::string(state_.dataset().rows.cell(row, column));
    }
    using Place = std::pair<int, int>;
};

TEST_F(GridKeys, WhatIsStillBeingTypedIsSavedAndAskedAbout) {
    openBlank();
    ASSERT_TRUE(state_.saveProject(folder_ / "typed.svp"));
    settle();
    ASSERT_FALSE(window_.isWindowModified());
    type("42");
    EXPECT_EQ(cell(0, 0), "") << "still in the editor";
    saveAnswer_ = SaveAnswer::cancel;
    EXPECT_FALSE(window_.close());
    EXPECT_EQ(asked_.back().substr(0, 4), "save");

    type("7");
    EXPECT_EQ(cell(0, 0), "42") << "the editor is still open";
    ASSERT_TRUE(state_.saveProject());
    EXPECT_EQ(cell(0, 0), "427");
    EXPECT_FALSE(state_.hasUnsavedWork());
    EXPECT_TRUE(read("typed.svp").contains("427"));
}

TEST_F(GridKeys, FindForwardAndBackwardAndReturnToTheTable) {
    openTowns();
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_EQ(window_.focusWidget(), field("Find in the table"));
    type("bern");
    press(Qt::Key_Return);
    EXPECT_EQ(place(), Place(0, 0));
    press(Qt::Key_Return);
    EXPECT_EQ(place(), Place(3, 0));
    EXPECT_TRUE(says("2 of 2 matches"));
    press(Qt::Key_Return);
    EXPECT_EQ(place(), Place(0, 0));
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(place(), Place(3, 0));
    press(Qt::Key_Escape);
    EXPECT_FALSE(field("Find in the table")->isVisible());
    EXPECT_EQ(window_.focusWidget(), &grid());
    press(Qt::Key_F, Qt::ControlModifier);
    type("nowhere");
    press(Qt::Key_Return);
    EXPECT_EQ(place(), Place(3, 0)) << "without a match one stays where one is";
}

TEST_F(GridKeys, GoToARow) {
    openTowns();
    press(Qt::Key_G, Qt::ControlModifier);
    ASSERT_EQ(window_.focusWidget(), field("Go to row"));
    type("3");
    press(Qt::Key_Return);
    EXPECT_EQ(place(), Place(2, 0));
    EXPECT_EQ(window_.focusWidget(), &grid());
    EXPECT_EQ(state_.data.selectedDatasetRow.get(), 2);
}

TEST_F(GridKeys, CopyTheBlockThatIsSelected) {
    openTowns();
    goTo(1, 0);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Basel\t2\nThun\t3\n");
}

TEST_F(GridKeys, PasteABlockAndTakeItBack) {
    openBlank();
    goTo(1, 1);
    QGuiApplication::clipboard()->setText("8\n10\n12\n");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(state_.dataset().rowCount(), 4);
    EXPECT_EQ(state_.dataset().columnCount(), 2);
    EXPECT_EQ(cell(3, 1), "12");
    EXPECT_EQ(cell(1, 0), "");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(state_.dataset().rowCount(), 3);
    EXPECT_EQ(cell(1, 1), "");
    EXPECT_TRUE(asked_.empty());
}

TEST_F(GridKeys, TypeIntoACellAndLeaveItUntouchedWithEscape) {
    openBlank();
    goTo(0, 1);
    type("42");
    press(Qt::Key_Return);
    EXPECT_EQ(cell(0, 1), "42");
    goTo(0, 1);
    press(Qt::Key_F2);
    type("9");
    press(Qt::Key_Escape);
    EXPECT_EQ(cell(0, 1), "42");
    EXPECT_TRUE(window_.isWindowModified());
}

TEST_F(GridKeys, TypeNothingIntoAnImportedTable) {
    openTowns();
    goTo(0, 0);
    type("Genf");
    press(Qt::Key_Return);
    EXPECT_EQ(cell(0, 0), "Bern");
    QGuiApplication::clipboard()->setText("Genf");
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(cell(0, 0), "Bern");
}

}  // namespace
}  // namespace sorvane
