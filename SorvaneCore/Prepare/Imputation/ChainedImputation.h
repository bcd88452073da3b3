#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneCore/Numerics/SplitMix64.h"
#include "SorvaneCore/Prepare/Imputation/ImputationTable.h"

namespace sorvane {

/// One copy of the data, completed sweep by sweep.
struct ChainedImputation {
    ImputationTable table;
    SplitMix64 random;
    /// How many draws the steps have taken.
    std::uint64_t draws = 0;
    /// Of each column, how many steps found no fit and left its cells as they were.
    std::vector<std::int64_t> stepsWithoutFit;

    /// Fills each incomplete column once, from what the others hold by now.
    void sweep(std::size_t donorCount);
    /// What each column's filled-in cells hold by now.
    std::vector<ImputedMoments> moments() const;

private:
    void imputeVariableStep(std::size_t target, std::size_t donorCount);
    void matchDonors(std::size_t target, const ColumnPrediction& fit, std::size_t donorCount);
    void drawResiduals(std::size_t target, const ColumnPrediction& fit);
};

}  // namespace sorvane
