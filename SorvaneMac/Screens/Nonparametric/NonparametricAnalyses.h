#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/Nonparametric/NonparametricFields.h"

/// The tests of Nonparametric & Categorical, each in the source file of its name.
namespace sorvane::NonparametricAnalyses {

/// The Mann-Whitney test of one outcome in two groups.
std::unique_ptr<Analysis> mannWhitney(StudioState& state, NonparametricFields& fields);

/// The signed-rank test of two measurements of the same cases.
std::unique_ptr<Analysis> wilcoxonSignedRank(StudioState& state, NonparametricFields& fields);

/// The Kruskal-Wallis test of one outcome in several groups, with Dunn's pairs.
std::unique_ptr<Analysis> kruskalWallis(StudioState& state, NonparametricFields& fields);

/// The Friedman test of conditions that every case went through.
std::unique_ptr<Analysis> friedman(StudioState& state, NonparametricFields& fields);

/// The chi-square test of two categorical columns.
std::unique_ptr<Analysis> chiSquareIndependence(StudioState& state, NonparametricFields& fields);

/// The chi-square test of one column's categories against equal shares.
std::unique_ptr<Analysis> chiSquareFit(StudioState& state, NonparametricFields& fields);

/// Fisher's exact test of two binary columns.
std::unique_ptr<Analysis> fisherExact(StudioState& state, NonparametricFields& fields);

/// McNemar's test of change in a binary outcome.
std::unique_ptr<Analysis> mcNemar(StudioState& state, NonparametricFields& fields);

}  // namespace sorvane::NonparametricAnalyses
