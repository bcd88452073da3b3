#include "Benchmarks/Workload.h"
#include "SorvaneCore/Dataset/TextColumnBuilder.h"
#include "SorvaneCore/Import/VariableClassifier.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Prepare/DataCleaning.h"
#include "SorvaneCore/Prepare/MissingDataAnalysis.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr std::size_t manyRows = 1'000'000;

/// Small whole numbers that repeat no pattern, the same each time.
class Digits {
public:
    std::uint64_t next(std::uint64_t below) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return (state_ >> 33) % below;
    }

private:
    std::uint64_t state_ = 1;
};

/// Answers from 1 to 5 and, now and then, nothing.
ImportedDataset answers(std::size_t rows, std::size_t columns) {
    Digits digits;
    ImportedDataset dataset;
    dataset.name = "answers";
    std::vector<TextTable::Column> cells;
    for (std::size_t column = 0; column < columns; ++column) {
        dataset.headers.push_back("q" + NumberText::integer(static_cast<std::int64_t>(column) + 1));
        TextColumnBuilder builder;
        for (std::size_t row = 0; row < rows; ++row) {
            const std::uint64_t answer = digits.next(20);
            builder.append(answer == 0
                               ? std::string()
                               : NumberText::integer(static_cast<std::int64_t>(answer % 5) + 1));
        }
        cells.push_back(builder.finish());
    }
    dataset.rows = TextTable(std::move(cells), rows);
    dataset.variables = VariableClassifier().classify(dataset.headers, dataset.rows);
    for (DataVariable& variable : dataset.variables) {
        variable.assignedType = VariableKind::psychometricItem;
        variable.includeInReliability = true;
        variable.scaleRange = ScaleRange{.minimum = 1.0, .maximum = 5.0};
    }
    return dataset;
}

std::shared_ptr<StudioState> workspaceWith(ImportedDataset dataset) {
    auto state = std::make_shared<StudioState>("Resources");
    state->data.dataset.replace(std::move(dataset));
    state->editor.rcSource.set({"q1"});
    state->derived.selectedBinningVariableName.set({"q1"});
    state->editor.rcValueRules.set({{.id = Uuid(), .sources = {5}, .output = std::nullopt}});
    state->editor.cvSources.set({"q1", "q2", "q3", "q4", "q5", "q6", "q7", "q8", "q9", "q10"});
    state->scale.reverseCodedItemNames.set({"q2", "q4"});
    state->scale.reliabilityMissingDataRule.set(ReliabilityMissingDataRule::availableItemMean);
    return state;
}

/// An operation of the workspace, taken back each time so that the table stays as it is.
Workload operation(std::string name, bool (StudioState::*run)()) {
    return {.name = std::move(name), .size = "1e6x10", .targetSeconds = 0.3, .prepare = [run] {
                auto state = workspaceWith(answers(manyRows, 10));
                return Job{.run =
                               [state, run] {
                                   ((*state).*run)();
                                   state->undoLastDataChange();
                               },
                           .amount = static_cast<double>(manyRows),
                           .unit = "rows"};
            }};
}

Workload duplicates() {
    return {.name = "duplicate_rows", .size = "1e6x20", .targetSeconds = 1.0, .prepare = [] {
                auto dataset = std::make_shared<ImportedDataset>(answers(manyRows, 20));
                return Job{.run = [dataset] { DataCleaning::duplicateRows(dataset->rows); },
                           .amount = static_cast<double>(manyRows),
                           .unit = "rows"};
            }};
}

/// 200 patterns: each row lacks what its pattern lacks.
std::vector<NumericColumn> patternedColumns(std::size_t rows, std::size_t columns) {
    constexpr std::uint64_t patternCount = 200;
    Digits digits;
    std::vector<std::vector<bool>> lacking(patternCount, std::vector<bool>(columns));
    for (std::size_t pattern = 1; pattern < patternCount; ++pattern) {
        for (std::size_t column = 1; column < columns; ++column) {
            lacking[pattern][column] = digits.next(8) == 0;
        }
    }
    std::vector<std::vector<std::optional<double>>> cells(columns);
    for (std::size_t row = 0; row < rows; ++row) {
        const std::uint64_t pattern = digits.next(patternCount);
        for (std::size_t column = 0; column < columns; ++column) {
            const auto value = static_cast<double>(digits.next(1000));
            cells[column].push_back(lacking[pattern][column] ? std::nullopt : std::optional(value));
        }
    }
    return {cells.begin(), cells.end()};
}

Workload littleMCAR() {
    return {.name = "little_mcar", .size = "1e5x20", .targetSeconds = 1.0, .prepare = [] {
                auto columns =
                    std::make_shared<std::vector<NumericColumn>>(patternedColumns(100'000, 20));
                return Job{.run =
                               [columns] {
                                   static_cast<void>(MissingDataAnalysis::littleMCAR(*columns, {}));
                               },
                           .amount = 100'000.0,
                           .unit = "rows"};
            }};
}

}  // namespace

std::vector<Workload> preparationWorkloads() {
    return {operation("recode", &StudioState::runRecode),
            operation("compute_mean", &StudioState::runCompute),
            operation("scale_score", &StudioState::createScaleScoreVariable),
            operation("bands", &StudioState::createBinnedVariable),
            duplicates(),
            littleMCAR()};
}

}  // namespace sorvane
