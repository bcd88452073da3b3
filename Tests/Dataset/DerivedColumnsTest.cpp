#include "SorvaneCore/Dataset/Grid/DerivedColumns.h"

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/CSVWriter.h"
#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/ImportCautions.h"

namespace sorvane {
namespace {

ImportedDataset imported() {
    return CSVImporter().importCSV("survey", "id,q1,q1\n1,4,na\n2,5\n3,,2\n");
}

TEST(DerivedColumns, TheRecordFollowsTheCellsAndKeepsItsSource) {
    const ImportedDataset before = imported();
    ImportedDataset dataset = before;
    DerivedColumns::append(dataset, "score",
                           TextColumn::of(std::vector<std::string>{"7", "", "NA"}),
                           VariableKind::outcome, "Made.");
    const ImportReadinessMetadata& record = dataset.importMetadata;
    EXPECT_EQ(record.columnCount, 4);
    EXPECT_EQ(record.totalCellCount, 12);
    EXPECT_EQ(record.missingCellCount, before.importMetadata.missingCellCount + 2);
    EXPECT_EQ(record.issues, before.importMetadata.issues);
    EXPECT_EQ(record.sourceKind, ImportSourceKind::csv);
    EXPECT_EQ(record.rowSummaries[1].missingCount, 2);
    EXPECT_EQ(record.rowSummaries[1].paddedFieldCount, 1);
    EXPECT_EQ(record.observedMissingMarkers.at("(blank)"), 3);
    const DataVariable& made = dataset.variables.back();
    EXPECT_EQ(made.inferredType, VariableKind::outcome);
    EXPECT_EQ(made.warnings, std::vector<std::string>{"Made."});
    EXPECT_FALSE(made.includeInReliability);
    EXPECT_TRUE(made.includeInDescriptives);

    DerivedColumns::append(dataset, "key", TextColumn::blank(3), VariableKind::administrative, "");
    EXPECT_FALSE(dataset.variables.back().includeInDescriptives);
    DerivedColumns::remove(dataset, 4);
    DerivedColumns::remove(dataset, 3);
    EXPECT_EQ(dataset, before);
}

TEST(DerivedColumns, AReplacedColumnKeepsWhatTheUserSettled) {
    ImportedDataset dataset = imported();
    dataset.variables[1].assignedType = VariableKind::rubricItem;
    dataset.variables[1].includeInReliability = true;
    dataset.variables[1].label = "Felt calm";
    dataset.variables[1].assignedConstruct = "calm";
    dataset.variables[1].includeInDescriptives = false;
    const Uuid id = dataset.variables[1].id;
    DerivedColumns::replace(dataset, 1, TextColumn::of(std::vector<std::string>{"1", "2"}),
                            "Made.");
    EXPECT_EQ(dataset.variables[1].id, id);
    EXPECT_EQ(dataset.variables[1].assignedType, VariableKind::rubricItem);
    EXPECT_TRUE(dataset.variables[1].includeInReliability);
    EXPECT_EQ(dataset.variables[1].label, "Felt calm");
    EXPECT_EQ(dataset.variables[1].assignedConstruct, "calm");
    EXPECT_FALSE(dataset.variables[1].includeInDescriptives);
    EXPECT_EQ(dataset.variables[1].numericSummary->maximum, 2.0);
    EXPECT_EQ(dataset.variables[1].missingCount, 1);
    EXPECT_EQ(dataset.rows.cell(2, 1), "");
}

TEST(DerivedColumns, WhatTheImportNotedStaysAndNamesTheColumnsAsTheyAreCalled) {
    ImportedDataset dataset = imported();
    dataset.importMetadata.notes = {{"Encoding: UTF-8."}};
    const std::vector<std::size_t> doubtful = {0, 1};
    ImportCautions::add({.implausible = doubtful, .shifted = {}}, dataset);
    DerivedColumns::append(dataset, "score", TextColumn::blank(3), VariableKind::outcome, "");
    DerivedColumns::rename(dataset, 1, "mood");
    EXPECT_EQ(dataset.headers[1], "mood");
    EXPECT_EQ(dataset.variables[1].name, "mood");
    EXPECT_EQ(dataset.importMetadata.columnSummaries[1].header, "mood");
    DerivedColumns::remove(dataset, 0);
    EXPECT_EQ(dataset.importMetadata.notes, std::vector<std::string>{"Encoding: UTF-8."});
    ASSERT_TRUE(dataset.importMetadata.cautions);
    const ImportCaution& caution = dataset.importMetadata.cautions->front();
    EXPECT_EQ(caution.columnNames, std::vector<std::string>{"mood"});
    EXPECT_TRUE(
        caution.message.starts_with("Numbers far too large to be data were read in mood. They"))
        << caution.message;
    DerivedColumns::remove(dataset, 0);
    EXPECT_FALSE(dataset.importMetadata.cautions);
}

TEST(CSVWriter, QuotesWhatAReaderWouldTakeApart) {
    ImportedDataset dataset;
    dataset.headers = {"a,b", "c"};
    dataset.rows = TextTable::fromRows({{"say \"so\"", "two\nlines"}, {" 1 ", "a\rb"}}, 2);
    EXPECT_EQ(CSVWriter::text(dataset),
              "\"a,b\",c\n\"say \"\"so\"\"\",\"two\nlines\"\n 1 ,\"a\rb\"\n");
}

TEST(DatasetGridEditor, ReadsABlockAsSpreadsheetsCopyIt) {
    using Cells = std::vector<std::vector<std::string>>;
    EXPECT_EQ(DatasetGridEditor::pastedCells("a\tb\r\n1\t\"x\ty\"\r\n"),
              (Cells{{"a", "b"}, {"1", "x\ty"}}));
    EXPECT_EQ(DatasetGridEditor::pastedCells("1\n\n3"), (Cells{{"1"}, {""}, {"3"}}));
    EXPECT_EQ(DatasetGridEditor::pastedCells(""), Cells{});
}

}  // namespace
}  // namespace sorvane
