#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "SorvaneCore/Dataset/Grid/BlankDatasetFactory.h"
#include "SorvaneCore/Dataset/Grid/DatasetGridEditor.h"
#include "SorvaneCore/Dataset/Grid/ImplausibleCells.h"
#include "SorvaneCore/Import/CSVImporter.h"
#include "SorvaneCore/Import/ImportCautions.h"
#include "SorvaneCore/Import/StatPackageImporter.h"
#include "Tests/Import/SystemFileBuilder.h"

namespace sorvane {
namespace {

using Texts = std::vector<std::string>;

TEST(BlankDatasetFactory, MakesAnEmptyGridWithinItsLimits) {
    const ImportedDataset least = BlankDatasetFactory::make("Study", 0, -3);
    EXPECT_EQ(least.rowCount(), 1);
    EXPECT_EQ(least.headers, Texts{"Var1"});
    const ImportedDataset most = BlankDatasetFactory::make("Study", 20'000, 201);
    EXPECT_EQ(most.rowCount(), 10'000);
    EXPECT_EQ(most.columnCount(), 200);
    EXPECT_EQ(most.headers.back(), "Var200");
    EXPECT_EQ(most.importMetadata.sourceKind, ImportSourceKind::blank);
    EXPECT_EQ(most.importMetadata.worksheetName, "New dataset");
    EXPECT_EQ(most.importMetadata.missingCellCount, 2'000'000);
    EXPECT_EQ(most.variables.back().inferredType, VariableKind::grouping);
    EXPECT_EQ(BlankDatasetFactory::make("", 2, 2, Texts{"a"}).headers, (Texts{"Var1", "Var2"}));
    EXPECT_EQ(BlankDatasetFactory::make("", 2, 2, Texts{"a", " a"}).headers, (Texts{"a", "a 2"}));
}

/// The dataset with every column gathered and profiled from nothing.
ImportedDataset rebuilt(const ImportedDataset& dataset) {
    std::vector<Texts> rows;
    for (std::size_t row = 0; row < dataset.rows.rowCount(); ++row) {
        rows.push_back(dataset.rows.row(row).texts());
    }
    ImportedDataset result = dataset;
    result.rows = TextTable::fromRows(rows, dataset.headers.size());
    DatasetGridEditor::refreshMetadata(result);
    return result;
}

TEST(DatasetGridEditor, WritesACellAsAFullRefreshWouldFindIt) {
    std::mt19937 generator(11);
    const Texts texts = {"", "NA", "1", "2", "3.5", "x", " X ", "-", "a longer answer in words"};
    ImportedDataset dataset =
        CSVImporter().importCSV("survey", "q1,comment,q1\n1,good,2\n,,3\nNA,-,.\n4,bad,5,6\n");
    dataset.variables[0].assignedType = VariableKind::exclude;
    dataset.variables[1].label = "Anything else?";
    const std::vector<DataVariable> former = dataset.variables;
    for (int edit = 0; edit < 200; ++edit) {
        DatasetGridEditor::setCell(dataset, generator() % 3, generator() % 3,
                                   texts[generator() % texts.size()]);
        ASSERT_EQ(dataset, rebuilt(dataset));
    }
    EXPECT_EQ(dataset.variables[0].id, former[0].id);
    EXPECT_EQ(dataset.variables[0].assignedType, VariableKind::exclude);
    EXPECT_EQ(dataset.variables[1].label, "Anything else?");
    EXPECT_EQ(dataset.variables[0].scaleRange, former[0].scaleRange);
    EXPECT_EQ(dataset.importMetadata.sourceKind, ImportSourceKind::csv);
    EXPECT_TRUE(dataset.importMetadata.issues.empty());
    EXPECT_EQ(dataset.importMetadata.rowSummaries[2].sourceRowNumber, 4);
}

TEST(DatasetGridEditor, LeavesTheColumnsThatWereNotTouchedAlone) {
    ImportedDataset dataset = BlankDatasetFactory::make("Study", 10'000, 200);
    const TextTable before = dataset.rows;
    DatasetGridEditor::setCell(dataset, 9'999, 7, "typed");
    for (std::size_t column = 0; column < 200; ++column) {
        EXPECT_EQ(dataset.rows.sharedColumn(column) == before.sharedColumn(column), column != 7);
    }
    EXPECT_EQ(dataset.rows.cell(9'999, 7), "typed");
    EXPECT_EQ(before.cell(9'999, 7), "");
    EXPECT_EQ(dataset.importMetadata.missingCellCount, 1'999'999);
}

TEST(ImplausibleCells, GoMissingInTheColumnsWarnedAbout) {
    ImportedDataset dataset = CSVImporter().importCSV(
        "file", "single,double,other\n1,-1.797e308,1e301\n1.701411835e+38,5,2\n3,1e300,3\n");
    const ImportedDataset untouched = dataset;
    ImplausibleCells::setToMissing(dataset);
    EXPECT_EQ(dataset, untouched) << "nothing was warned about";

    const ImportCaution other{.kind = ImportCautionKind::otherReferenceWidth};
    dataset.importMetadata.cautions = {
        {{.kind = ImportCautionKind::implausibleMagnitude, .columnNames = {"single", "double"}},
         other}};
    dataset.importMetadata.notes = {{"Encoding: UTF-8."}};
    dataset.variables[0].scaleRange = ScaleRange{.minimum = 1, .maximum = 5};
    dataset.variables[0].assignedType = VariableKind::rubricItem;
    dataset.variables[0].warnings = {
        "Numeric field was not named as an outcome or item; assign a "
        "research role before analysis.",
        "The file said so.", ImportCautions::warning(ImportCautionKind::implausibleMagnitude)};
    ImplausibleCells::setToMissing(dataset);
    EXPECT_EQ(dataset.variables[0].warnings.back(), "The file said so.");
    EXPECT_EQ(dataset.variables[0].assignedType, VariableKind::rubricItem);
    EXPECT_EQ(dataset.variables[2].warnings, untouched.variables[2].warnings);
    EXPECT_EQ(dataset.importMetadata.notes, std::vector<std::string>{"Encoding: UTF-8."});
    EXPECT_EQ(dataset.rows.row(0).texts(), (Texts{"1", "", "1e301"}));
    EXPECT_EQ(dataset.rows.row(1).texts(), (Texts{"", "5", "2"}));
    EXPECT_EQ(dataset.rows.row(2).texts(), (Texts{"3", "1e300", "3"}));
    EXPECT_EQ(dataset.variables[0].scaleRange, (ScaleRange{.minimum = 1, .maximum = 5}));
    EXPECT_EQ(dataset.variables[1].scaleRange, (ScaleRange{.minimum = 5, .maximum = 1e300}));
    EXPECT_EQ(dataset.importMetadata.missingCellCount, 2);
    EXPECT_EQ(dataset.importMetadata.cautions, std::vector<ImportCaution>{other});
}

TEST(ImplausibleCells, LeaveOtherColumnsAndNotesAlone) {
    SystemFileBuilder builder;
    builder.variable({.name = "q1", .missingCount = 1, .missing = {99}});
    builder.variable({.name = "q2", .missingCount = 1, .missing = {99}});
    std::string cases;
    for (const double value : {1.0, 2.0, 3.0, 4.0, 5.0, std::numeric_limits<double>::lowest()}) {
        cases += bytesOf(value) + bytesOf(std::min(std::abs(value), 5.0));
    }
    ImportedDataset dataset = StatPackageImporter().importSPSS("s.sav", builder.with(cases));
    ImportReadinessMetadata& metadata = dataset.importMetadata;
    metadata.issues.push_back({.message = "A column had a blank header."});
    const ImportedDataset former = dataset;
    ASSERT_EQ(former.variables[0].assignedType, VariableKind::textResponse);
    ASSERT_EQ(former.variables[1].warnings.size(), 2U);

    ImplausibleCells::setToMissing(dataset);
    const DataVariable& cleaned = dataset.variables[0];
    EXPECT_EQ(cleaned.assignedType, VariableKind::psychometricItem);
    EXPECT_TRUE(cleaned.includeInReliability);
    EXPECT_EQ(cleaned.scaleRange, (ScaleRange{.minimum = 1, .maximum = 5}));
    EXPECT_EQ(cleaned.warnings, former.variables[1].warnings) << "of user-missing values as well";
    EXPECT_EQ(dataset.variables[1], former.variables[1]);
    EXPECT_EQ(metadata.issues, former.importMetadata.issues);
    EXPECT_EQ(metadata.notes, former.importMetadata.notes);
    EXPECT_FALSE(metadata.cautions);
    EXPECT_EQ(metadata.rowSummaries[5].missingCount, 1);

    ImportedDataset settled = former;
    settled.variables[0].assignedType = VariableKind::outcome;
    ImplausibleCells::setToMissing(settled);
    EXPECT_EQ(settled.variables[0].assignedType, VariableKind::outcome);
}

}  // namespace
}  // namespace sorvane
