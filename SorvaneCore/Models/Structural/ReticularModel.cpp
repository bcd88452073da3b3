#include "SorvaneCore/Models/Structural/ReticularModel.h"

#include <functional>
#include <map>
#include <string>

#include "SorvaneCore/Numerics/LinearAlgebra.h"

namespace sorvane {

namespace {

using Positions = std::map<std::string, std::size_t, std::less<>>;

Positions positionsOf(const SEMModel& model) {
    Positions positions;
    for (const std::string& name : model.observed) {
        positions.emplace(name, positions.size());
    }
    for (const std::string& name : model.latent) {
        positions.emplace(name, positions.size());
    }
    return positions;
}

ReticularModel::Entry entryOf(const SEMParameterSlot& slot, const Positions& positions) {
    const std::size_t left = positions.at(slot.lhs);
    const std::size_t right = positions.at(slot.rhs);
    switch (slot.kind) {
        case SEMParameterKind::loading:
            return {.isDirected = true, .row = right, .column = left};
        case SEMParameterKind::regression:
            return {.isDirected = true, .row = left, .column = right};
        default:
            return {.isDirected = false, .row = left, .column = right};
    }
}

}  // namespace

ReticularModel::ReticularModel(const SEMModel& model)
    : observedCount_(model.observed.size()), size_(model.observed.size() + model.latent.size()) {
    const Positions positions = positionsOf(model);
    for (const SEMParameterSlot& slot : model.parameters) {
        entries_.push_back(entryOf(slot, positions));
    }
}

std::optional<ReticularModel::Moments> ReticularModel::moments(
    std::span<const double> coefficients) const {
    std::vector<double> withoutPaths(size_ * size_, 0.0);
    std::vector<double> spreads(size_ * size_, 0.0);
    for (std::size_t i = 0; i < size_; ++i) {
        withoutPaths[i * size_ + i] = 1.0;
    }
    for (std::size_t slot = 0; slot < entries_.size(); ++slot) {
        const Entry& entry = entries_[slot];
        if (entry.isDirected) {
            withoutPaths[entry.row * size_ + entry.column] -= coefficients[slot];
        } else {
            spreads[entry.row * size_ + entry.column] = coefficients[slot];
            spreads[entry.column * size_ + entry.row] = coefficients[slot];
        }
    }
    auto total = LinearAlgebra::invert(withoutPaths, size_);
    if (!total) {
        return std::nullopt;
    }
    std::vector<double> transposed(size_ * size_);
    for (std::size_t i = 0; i < size_; ++i) {
        for (std::size_t j = 0; j < size_; ++j) {
            transposed[j * size_ + i] = (*total)[i * size_ + j];
        }
    }
    std::vector<double> covariance =
        LinearAlgebra::multiply(LinearAlgebra::multiply(*total, size_, size_, spreads, size_),
                                size_, size_, transposed, size_);
    return Moments{.total = std::move(*total), .covariance = std::move(covariance)};
}

std::vector<double> ReticularModel::observedPart(std::span<const double> matrix) const {
    std::vector<double> part;
    part.reserve(observedCount_ * observedCount_);
    for (std::size_t i = 0; i < observedCount_; ++i) {
        const std::span<const double> row = matrix.subspan(i * size_, observedCount_);
        part.insert(part.end(), row.begin(), row.end());
    }
    return part;
}

std::vector<std::optional<std::size_t>> ReticularModel::markers(const SEMModel& model) const {
    std::vector<std::optional<std::size_t>> marker(size_);
    for (std::size_t i = 0; i < observedCount_; ++i) {
        marker[i] = i;
    }
    // From the indicators up: each round settles the factors one level higher. The first indicator
    // comes last, so that it stays.
    for (std::size_t round = observedCount_; round < size_; ++round) {
        for (std::size_t slot = entries_.size(); slot-- > 0;) {
            if (model.parameters[slot].kind == SEMParameterKind::loading) {
                marker[entries_[slot].column] = marker[entries_[slot].row];
            }
        }
    }
    return marker;
}

std::vector<double> ReticularModel::variableUnits(const SEMModel& model,
                                                  std::span<const double> observedUnits) const {
    std::vector<double> result;
    for (const std::optional<std::size_t>& marker : markers(model)) {
        result.push_back(marker ? observedUnits[*marker] : 1.0);
    }
    return result;
}

std::vector<double> ReticularModel::units(std::span<const double> variableUnits) const {
    std::vector<double> result;
    for (const Entry& entry : entries_) {
        result.push_back(entry.isDirected ? variableUnits[entry.row] / variableUnits[entry.column]
                                          : variableUnits[entry.row] * variableUnits[entry.column]);
    }
    return result;
}

std::vector<double> ReticularModel::inUnits(std::vector<double> covariance,
                                            std::span<const double> variableUnits) {
    const std::size_t size = variableUnits.size();
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t j = 0; j < size; ++j) {
            covariance[i * size + j] *= variableUnits[i] * variableUnits[j];
        }
    }
    return covariance;
}

}  // namespace sorvane
