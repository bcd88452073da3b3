#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "SorvaneMac/State/StudioState.h"

namespace sorvane {
namespace {

class GridEditing : public testing::Test {
protected:
    GridEditing() { state_.createBlankDataset("typed", 3, 2, std::nullopt); }

    std::string cell(std::size_t row, std::size_t column) {
        return std::string(state_.dataset().rows.cell(row, column));
    }
    using Names = std::vector<std::string>;

    StudioState state_{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
};

TEST_F(GridEditing, ABlockIsPastedAndTheGridGrows) {
    ASSERT_TRUE(state_.pasteDatasetBlock(2, 1, "1\t2\n3\t4\n"));
    EXPECT_EQ(state_.dataset().rowCount(), 4);
    EXPECT_EQ(state_.dataset().headers, (Names{"Var1", "Var2", "Var3"}));
    EXPECT_EQ(cell(3, 2), "4");
    EXPECT_EQ(cell(2, 0), "");
    EXPECT_EQ(state_.dataset().variables[1].numericSummary->maximum, 3.0);

    EXPECT_FALSE(state_.pasteDatasetBlock(0, 0, std::string(20000, '\t') + "1"));
    EXPECT_NE(state_.projectError->value_or("").find("too large"), std::string::npos);
    EXPECT_EQ(state_.dataset().rowCount(), 4);

    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset().rowCount(), 3);
    EXPECT_EQ(state_.data.transformationLog->back(),
              "Reverted the pasting of a block of 2 row(s) and 2 column(s).");
}

TEST_F(GridEditing, RowsAndColumnsComeAndGoWithOneStepBack) {
    state_.updateDatasetCell(2, 0, "x");
    state_.data.selectedDatasetRow.set(2);
    state_.setDatasetRowCount(1);
    EXPECT_EQ(state_.data.selectedDatasetRow.get(), std::nullopt);
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "removal of 2 row(s)");
    state_.setDatasetColumnCount(1);
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "removal of 1 column(s)");
    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset().columnCount(), 2);
    EXPECT_EQ(state_.dataset().rowCount(), 1);
    EXPECT_FALSE(state_.undoLastDataChange());

    state_.setDatasetRowCount(0);
    state_.addDatasetRow();
    state_.addDatasetColumn(" Var2 ");
    state_.addDatasetColumn("");
    EXPECT_EQ(state_.dataset().rowCount(), 2);
    EXPECT_EQ(state_.dataset().headers, (Names{"Var1", "Var2", "Var2 2", "Var4"}));
    EXPECT_TRUE(state_.setDatasetSize(1, 16384));
    EXPECT_FALSE(state_.addDatasetColumn(""));
    EXPECT_EQ(state_.dataset().columnCount(), 16384);
}

TEST_F(GridEditing, OneChangeOfSizeIsOneStepBack) {
    state_.createBlankDataset("typed", 20, 10, std::nullopt);
    ASSERT_TRUE(state_.setDatasetSize(5, 4));
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "removal of 15 row(s) and 6 column(s)");
    EXPECT_EQ(state_.undoLoses(), std::nullopt);
    state_.updateDatasetCell(0, 0, "typed");
    EXPECT_NE(state_.undoLoses()->find("1 cell(s)"), std::string::npos);
    ASSERT_TRUE(state_.setDatasetSize(4, 4));
    EXPECT_EQ(state_.undoLoses(), std::nullopt) << "what was typed before stays";
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(cell(0, 0), "typed");
    state_.createBlankDataset("typed", 20, 10, std::nullopt);
    ASSERT_TRUE(state_.setDatasetSize(5, 4));
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset().rowCount(), 20);
    EXPECT_EQ(state_.dataset().columnCount(), 10);

    EXPECT_TRUE(state_.setDatasetSize(12000, 10)) << "it may grow beyond what it can begin with";
    EXPECT_FALSE(state_.setDatasetSize(1, 1000000));
    EXPECT_TRUE(state_.projectError->has_value());
    EXPECT_FALSE(state_.setDatasetSize(0, 1));
    EXPECT_EQ(state_.dataset().rowCount(), 12000);
}

TEST_F(GridEditing, AStepBackWarnsOfAllThatGoesWithIt) {
    const auto losing = [](const std::string& what) {
        return "The table goes back to what it was before the removal of 1 row(s). What came since "
               "then is lost: " +
               what + ".";
    };
    const auto shrink = [this] {
        state_.setDatasetRowCount(state_.dataset().rowCount() - 1);
    };

    shrink();
    EXPECT_EQ(state_.undoLoses(), std::nullopt);
    state_.addDatasetRow();
    EXPECT_EQ(state_.undoLoses(), losing("rows and columns that were added"));
    state_.updateDatasetCell(0, 0, "typed");
    EXPECT_EQ(state_.undoLoses(),
              losing("what was typed (1 cell(s)), rows and columns that were added"));
    shrink();
    EXPECT_EQ(state_.undoLoses(), std::nullopt);
    state_.assignVariable(state_.dataset().variable("Var1")->id, VariableKind::outcome);
    EXPECT_EQ(state_.undoLoses(), losing("roles that were changed"));
    shrink();
    state_.data.datasetDraftName.set("Other");
    state_.updateDatasetName();
    state_.scale.reverseCodedItemNames.set({"Var1"});
    EXPECT_EQ(state_.undoLoses(),
              losing("the name of the table, marks of items as reversed or unreliable"));
    ASSERT_TRUE(state_.deleteDatasetColumn(0));
    EXPECT_EQ(state_.undoLoses(), std::nullopt) << "the mark goes and comes with its column";
    ASSERT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.undoLoses(), std::nullopt);
}

TEST_F(GridEditing, HeadersStayUniqueAndSelectionsFollow) {
    state_.updateDatasetCell(0, 0, "4");
    state_.updateDatasetCell(1, 0, "5");
    state_.cleaning.clVar.set({"Var1"});
    state_.headerBinding(0).set("  Var2 ");
    EXPECT_EQ(state_.dataset().headers, (Names{"Var2 2", "Var2"}));
    EXPECT_EQ(state_.cleaning.clVar->name, "Var2 2");
    state_.updateDatasetHeader(0, "Var2");
    EXPECT_EQ(state_.dataset().headers[0], "Var2 2") << "its own name is free for it";
    state_.updateDatasetHeader(1, " ");
    EXPECT_EQ(state_.dataset().headers[1], "Column 2");
    EXPECT_TRUE(state_.undoLastDataChange());
    EXPECT_EQ(state_.dataset().headers[1], "Var2");

    ASSERT_TRUE(state_.deleteDatasetColumn(0));
    EXPECT_TRUE(state_.cleaning.clVar->isBlank());
    EXPECT_EQ(state_.data.dataChangeUndoLabel.get(), "deletion of column Var2 2");
    EXPECT_FALSE(state_.deleteDatasetColumn(0));
    EXPECT_EQ(state_.editor.dvMessage.get(),
              "The dataset needs at least one variable, so the last one cannot be deleted.");
}

TEST_F(GridEditing, AnImportedTableIsNotTypedIn) {
    state_.importPastedData("a,b\n1,2\n");
    const ImportedDataset before = state_.dataset();
    state_.updateDatasetCell(0, 0, "9");
    state_.addDatasetRow();
    state_.addDatasetColumn("c");
    state_.setDatasetRowCount(5);
    state_.setDatasetColumnCount(1);
    state_.updateDatasetHeader(0, "z");
    EXPECT_FALSE(state_.pasteDatasetBlock(0, 0, "9"));
    EXPECT_FALSE(state_.deleteDatasetColumn(0));
    EXPECT_EQ(state_.dataset(), before);
    EXPECT_FALSE(state_.canUndoDataChange());
}

TEST_F(GridEditing, TheTableIsExportedOrSaysWhyNot) {
    const auto file = std::filesystem::temp_directory_path() / (Uuid::fresh().text() + ".csv");
    state_.updateDatasetCell(0, 0, "a,b");
    ASSERT_TRUE(state_.exportDatasetCSV(file));
    std::ifstream written(file);
    const std::string text{std::istreambuf_iterator<char>(written), {}};
    EXPECT_EQ(text, "Var1,Var2\n\"a,b\",\n,\n,\n");
    EXPECT_EQ(state_.projectMessage.get(), "Exported dataset to " + file.string() + ".");
    EXPECT_EQ(state_.data.transformationLog->back(), "Exported CSV to " + file.string() + ".");
    std::filesystem::remove(file);
    EXPECT_FALSE(state_.exportDatasetCSV(std::nullopt));
    EXPECT_EQ(state_.projectMessage.get(), "Export cancelled.");
    EXPECT_FALSE(state_.exportDatasetCSV("/nowhere/at/all.csv"));
    EXPECT_TRUE(state_.projectError->has_value());
}

}  // namespace
}  // namespace sorvane
