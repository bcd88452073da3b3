#pragma once

#include <memory>

#include "SorvaneMac/Screens/Analysis.h"
#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"

/// The kinds of Latent Class, each in the source file of its name.
namespace sorvane::LatentClassAnalyses {

/// Latent profiles of numbers, or latent classes of categories.
std::unique_ptr<Analysis> latentMixture(StudioState& state,
                                        LatentClassFields& fields,
                                        LatentScreenKind kind);

/// Classes within each of which one factor relates the indicators.
std::unique_ptr<Analysis> factorMixture(StudioState& state, LatentClassFields& fields);

}  // namespace sorvane::LatentClassAnalyses
