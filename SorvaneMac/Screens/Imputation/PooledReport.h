#pragma once

#include <vector>

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// Pooled results as cards and findings.
namespace sorvane::PooledReport {

void addRegression(const PooledBasis& basis,
                   const std::vector<PooledCoefficient>& coefficients,
                   ScreenContent& content);
void addCorrelation(const PooledBasis& basis,
                    const PooledCorrelation& correlation,
                    ScreenContent& content);
void addMean(const PooledBasis& basis, const PooledEstimate& mean, ScreenContent& content);

}  // namespace sorvane::PooledReport
