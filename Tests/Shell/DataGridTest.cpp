#include <QCheckBox>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/StudioScreens.h"
#include "SorvaneMac/Shell/DataGridView.h"
#include "SorvaneMac/Shell/DataPreviewPage.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

using Direction = DataGridFindBar::Direction;

class DataGridTest : public ::testing::Test {
protected:
    DataGridTest() : state_("Resources"), screens_(state_), page_(workspace_) {
        state_.importPastedData("sex,town,note\n1,Bern,a\n2,Basel,b\n1,Thun,c\n9,BERN,d\n");
        state_.data.dataset.edit([](ImportedDataset& dataset) {
            dataset.variables[0].valueLabels = {{"1", "Female"}, {"2", "Male"}};
        });
        page_.refresh();
        page_.resize(900, 600);
        page_.show();
        page_.activateWindow();
        QCoreApplication::processEvents();
    }

    void find(const QString& text) {
        page_.openFindBar();
        words()->setText(text);
        page_.search();
    }
    bool says(const QString& text) {
        const QList<QLabel*> labels = page_.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(),
                           [&](const QLabel* label) { return label->text() == text; });
    }
    QLineEdit* named(const QString& name) {
        for (QLineEdit* edit : page_.findChildren<QLineEdit*>()) {
            if (edit->accessibleName() == name) {
                return edit;
            }
        }
        return nullptr;
    }
    QLineEdit* words() { return named("Find in the table"); }
    QString cell(int row, int column) {
        return grid().model()->index(row, column).data().toString();
    }
    DataGridView& grid() { return static_cast<DataGridView&>(*page_.findChild<QTableView*>()); }

    QApplication& application_ = offscreenApplication();
    StudioState state_;
    StudioScreens screens_;
    Workspace workspace_{.state = state_, .screens = screens_};
    DataPreviewPage page_;
};

TEST_F(DataGridTest, GoesFromMatchToMatch) {
    find("bern");
    EXPECT_EQ(grid().place(), (CellPlace{0, 1}));
    EXPECT_TRUE(says("1 of 2 matches"));
    page_.goToMatch(Direction::forward);
    EXPECT_EQ(grid().place(), (CellPlace{3, 1}));
    EXPECT_EQ(state_.data.selectedDatasetRow.get(), 3);
    page_.goToMatch(Direction::forward);
    EXPECT_EQ(grid().place(), (CellPlace{0, 1}));
    EXPECT_TRUE(grid().model()->index(3, 1).data(Qt::BackgroundRole).isValid());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(words()->parentWidget(), &escape);
    EXPECT_FALSE(words()->isVisible());
    EXPECT_FALSE(grid().model()->index(3, 1).data(Qt::BackgroundRole).isValid());
}

TEST_F(DataGridTest, ShowsAndCopiesLabelsWhereTheyAreOn) {
    EXPECT_EQ(cell(1, 0), "2");
    QCheckBox* labels = nullptr;
    for (QCheckBox* box : page_.findChildren<QCheckBox*>()) {
        labels = box->text() == "Value labels" ? box : labels;
    }
    ASSERT_TRUE(labels && labels->isEnabled());
    labels->click();
    page_.refresh();
    EXPECT_EQ(cell(1, 0), "Male");
    EXPECT_EQ(cell(3, 0), "9");
    grid().setFocus();
    grid().selectAll();
    EXPECT_TRUE(page_.copySelection());
    EXPECT_EQ(QGuiApplication::clipboard()->text(),
              "Female\tBern\ta\nMale\tBasel\tb\nFemale\tThun\tc\n9\tBERN\td\n");
}

TEST_F(DataGridTest, GoesToARowWithinTheTable) {
    QLineEdit* row = named("Go to row");
    for (const auto& [typed, wanted] :
         {std::pair("3", 2U), std::pair("900", 3U), std::pair("x", 3U), std::pair("0", 3U)}) {
        row->setText(typed);
        emit row->returnPressed();
        EXPECT_EQ(grid().place()->row, wanted) << typed;
    }
}

TEST_F(DataGridTest, SaysRoleAndMissingShareInTheHead) {
    const QString head =
        grid().model()->headerData(1, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    EXPECT_TRUE(head.startsWith("town, ") && head.endsWith(", complete")) << utf8(head);
}

TEST_F(DataGridTest, ABlockIsPastedIntoAGridThatCanBeEdited) {
    grid().setFocus();
    grid().goTo({.row = 0, .column = 0});
    application_.clipboard()->setText("7\t8\n9\t10\n");
    EXPECT_FALSE(page_.pasteSelection());
    EXPECT_EQ(cell(0, 0), "1");

    state_.createBlankDataset("typed", 2, 2, std::nullopt);
    page_.refresh();
    grid().setFocus();
    grid().goTo({.row = 1, .column = 0});
    EXPECT_TRUE(page_.pasteSelection());
    page_.refresh();
    EXPECT_EQ(cell(2, 1), "10");
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(),
              "pasting of a block of 2 row(s) and 2 column(s)");
}

}  // namespace
}  // namespace sorvane
