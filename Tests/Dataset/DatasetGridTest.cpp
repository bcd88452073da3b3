#include <algorithm>
#include <cmath>
#include <functional>
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

TEST(DatasetGridEditor, EveryEditKeepsWhatTheUserSettledAndTheFileToldOf) {
    ImportedDataset dataset = CSVImporter().importCSV("survey", "q1,q2\n1,4\n2,5\n3,1\n");
    DataVariable& settled = dataset.variables[0];
    settled.label = "Felt calm";
    settled.valueLabels = ValueLabels{{"1", "never"}};
    settled.assignedConstruct = "calm";
    settled.scaleRange = ScaleRange{.minimum = 0, .maximum = 9};
    settled.assignedType = VariableKind::rubricItem;
    settled.includeInReliability = true;
    settled.includeInDescriptives = false;
    const std::vector<std::size_t> doubtful = {1};
    ImportCautions::add({.implausible = doubtful, .shifted = {}}, dataset);
    dataset.importMetadata.notes = {{"Encoding: UTF-8."}};
    const DataVariable before = settled;
    const std::vector<Texts> block = {{"7", "8"}, {"9"}};
    const Texts more = {"q3", "q4"};
    const std::vector<std::function<void()>> edits = {
        [&] { DatasetGridEditor::setCell(dataset, 0, 0, "5"); },
        [&] { DatasetGridEditor::resizeRows(dataset, 5); },
        [&] { DatasetGridEditor::appendColumns(dataset, more); },
        [&] {
            DatasetGridEditor::writeBlock(dataset, 1, 0, block);
        }};
    for (const auto& edit : edits) {
        edit();
        const DataVariable& after = dataset.variables[0];
        EXPECT_EQ(after.id, before.id);
        EXPECT_EQ(after.label, before.label);
        EXPECT_EQ(after.valueLabels, before.valueLabels);
        EXPECT_EQ(after.assignedConstruct, before.assignedConstruct);
        EXPECT_EQ(after.scaleRange, before.scaleRange);
        EXPECT_EQ(after.assignedType, before.assignedType);
        EXPECT_TRUE(after.includeInReliability);
        EXPECT_FALSE(after.includeInDescriptives);
        ASSERT_TRUE(dataset.importMetadata.cautions);
        EXPECT_EQ(dataset.importMetadata.cautions->front().columnNames, Texts{"q2"});
        EXPECT_EQ(dataset.importMetadata.notes, Texts{"Encoding: UTF-8."});
    }
    EXPECT_EQ(dataset.headers, (Texts{"q1", "q2", "q3", "q4"}));
    EXPECT_EQ(dataset.rows.row(0).texts(), (Texts{"5", "4", "", ""}));
    EXPECT_EQ(dataset.rows.row(1).texts(), (Texts{"7", "8", "", ""}));
    EXPECT_EQ(dataset.rows.row(2).texts(), (Texts{"9", "1", "", ""})) << "a short line ends early";
    EXPECT_EQ(dataset.rows.rowCount(), 5U);
    EXPECT_EQ(dataset.variables[0].missingCount, 2);
    EXPECT_EQ(dataset.importMetadata.totalCellCount, 20);
    EXPECT_EQ(dataset.importMetadata.columnSummaries[3].missingCount, 5);
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
