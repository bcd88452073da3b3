#include <algorithm>

#include "SorvaneCore/Analyses/Basics/CompleteCases.h"
#include "SorvaneCore/Analyses/Basics/SampleMoments.h"
#include "SorvaneCore/Models/Structural/StructuralEquationModel.h"
#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane::StructuralEquationModel {

namespace {

using ColumnPointers = std::vector<const NumericColumn*>;

std::optional<ColumnPointers> columnsOf(std::span<const std::string> observed,
                                        std::span<const NumericColumn> columns,
                                        std::span<const std::string> variableNames) {
    ColumnPointers result;
    for (const std::string& name : observed) {
        const auto found = std::ranges::find(variableNames, name);
        if (found == variableNames.end()) {
            return std::nullopt;
        }
        result.push_back(&columns[static_cast<std::size_t>(found - variableNames.begin())]);
        if (result.back()->size() != result.front()->size()) {
            return std::nullopt;
        }
    }
    return result;
}

/// Column after column.
std::vector<double> deviations(const ColumnPointers& columns, std::span<const std::uint32_t> rows) {
    std::vector<double> result;
    result.reserve(columns.size() * rows.size());
    for (const NumericColumn* column : columns) {
        const std::vector<double> values = CompleteCases::gathered(*column, rows);
        const double mean = SampleMoments::mean(values);
        for (const double value : values) {
            result.push_back(value - mean);
        }
    }
    return result;
}

}  // namespace

std::optional<SEMSampleCovariance> sampleCovariance(std::span<const std::string> observed,
                                                    std::span<const NumericColumn> columns,
                                                    std::span<const std::string> variableNames) {
    if (columns.size() != variableNames.size()) {
        return std::nullopt;
    }
    const std::optional<ColumnPointers> used = columnsOf(observed, columns, variableNames);
    if (!used) {
        return std::nullopt;
    }
    const std::vector<std::uint32_t> rows = CompleteCases::rows(*used);
    SEMSampleCovariance sample{
        .n = static_cast<std::int64_t>(rows.size()),
        .totalRows = used->empty() ? 0 : static_cast<std::int64_t>(used->front()->size())};
    if (sample.n < 2) {
        return sample;
    }
    sample.matrix =
        LinearAlgebra::gramOfColumns(deviations(*used, rows), rows.size(), used->size());
    for (double& entry : sample.matrix) {
        entry /= static_cast<double>(sample.n - 1);
    }
    return sample;
}

}  // namespace sorvane::StructuralEquationModel
