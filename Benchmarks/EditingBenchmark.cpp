#include "Benchmarks/Workload.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

namespace {

constexpr std::int64_t gridRows = 10000;
constexpr std::int64_t gridColumns = 200;
/// A typed cell is to show in the next frame of a display that draws 60 a second.
constexpr double frameSeconds = 1.0 / 60.0;

/// The largest grid, full of answers.
std::shared_ptr<StudioState> fullGrid() {
    auto state = std::make_shared<StudioState>("Resources");
    state->createBlankDataset("Grid", gridRows, gridColumns, std::nullopt);
    state->data.dataset.edit([](ImportedDataset& dataset) {
        std::vector<std::string> row(gridColumns, "3");
        dataset.rows =
            TextTable::fromRows(std::vector<std::vector<std::string>>(gridRows, row), gridColumns);
    });
    return state;
}

}  // namespace

std::vector<Workload> editingWorkloads() {
    return {{.name = "typed_cell", .size = "1e4x200", .targetSeconds = frameSeconds, .prepare = [] {
                 auto state = fullGrid();
                 auto typed = std::make_shared<std::int64_t>(0);
                 return Job{.run =
                                [state, typed] {
                                    const std::int64_t number = (*typed)++;
                                    state->updateDatasetCell(number % gridRows,
                                                             number % gridColumns,
                                                             number % 2 == 0 ? "4" : "5");
                                },
                            .amount = 1.0,
                            .unit = "cells"};
             }}};
}

}  // namespace sorvane
