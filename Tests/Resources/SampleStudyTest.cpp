#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Analyses/Reliability/ReliabilityAnalyzer.h"
#include "SorvaneCore/Import/ScaleItemClassifier.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"

namespace sorvane {
namespace {

const std::vector<std::vector<std::string>> subscales = {{"sa1", "sa2", "sa3", "sa4r", "sa5"},
                                                         {"sr1", "sr2", "sr3r", "sr4", "sr5"},
                                                         {"mo1", "mo2", "mo3", "mo4", "mo5r"},
                                                         {"em1", "em2r", "em3", "em4", "em5"}};

ImportedDataset sample() {
    return SpreadsheetImporter().importData(SORVANE_SOURCE_DIR "/Resources/SampleEIStudy.csv");
}

TEST(SampleStudy, ComesInWithTheRolesThatItsNamesPromise) {
    const ImportedDataset study = sample();
    EXPECT_EQ(study.rowCount(), 300);
    EXPECT_TRUE(study.importMetadata.issues.empty());

    const std::map<std::string, VariableKind> expected = {
        {"respondent_id", VariableKind::administrative},
        {"age", VariableKind::demographicBackground},
        {"gender", VariableKind::demographicBackground},
        {"training_group", VariableKind::grouping},
        {"department", VariableKind::grouping},
        {"years_employed", VariableKind::status},
        {"performance_score", VariableKind::outcome},
        {"satisfaction_1", VariableKind::outcome},
        {"comment", VariableKind::textResponse}};
    for (const auto& [name, kind] : expected) {
        ASSERT_NE(study.variable(name), nullptr) << name;
        EXPECT_EQ(study.variable(name)->assignedType, kind) << name;
    }
    for (const std::string marker : {"(blank)", "-", "n/a", "na", "not answered"}) {
        EXPECT_TRUE(study.importMetadata.observedMissingMarkers.contains(marker)) << marker;
    }
}

TEST(SampleStudy, ItsItemsAreRecognisedAsAScale) {
    const ImportedDataset study = sample();
    std::map<std::string, bool> isSelected;
    for (const ScaleItemClassification& verdict :
         ScaleItemClassifier::classify(study.headers, study.rows.columns(), {})) {
        isSelected[verdict.columnName] = verdict.autoSelectAsScale;
    }
    for (const std::vector<std::string>& items : subscales) {
        for (const std::string& item : items) {
            EXPECT_EQ(study.variable(item)->assignedType, VariableKind::psychometricItem) << item;
            EXPECT_TRUE(isSelected[item]) << item;
        }
    }
    for (const std::string other : {"age", "years_employed", "performance_score", "comment"}) {
        EXPECT_FALSE(isSelected[other]) << other;
    }
}

TEST(SampleStudy, EachSubscaleIsReliableOnceItsReverseItemIsRecoded) {
    const ImportedDataset study = sample();
    for (const std::vector<std::string>& items : subscales) {
        ReliabilityOptions options{.itemNames = items};
        std::vector<NumericColumn> columns;
        for (const std::string& item : items) {
            columns.push_back(study.numericColumn(item));
            if (item.back() == 'r') {
                options.reverseCoded.push_back({.item = item, .minimum = 1.0, .maximum = 5.0});
            }
        }
        const std::optional<double> alpha = ReliabilityAnalyzer::analyze(columns, options).alpha;
        ASSERT_TRUE(alpha.has_value()) << items.front();
        EXPECT_GT(*alpha, 0.70) << items.front();
        EXPECT_LT(*alpha, 0.85) << items.front();
    }
}

}  // namespace
}  // namespace sorvane
