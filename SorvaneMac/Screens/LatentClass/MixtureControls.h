#pragma once

#include "SorvaneMac/Screens/LatentClass/LatentClassFields.h"
#include "SorvaneMac/Screens/Screen.h"
#include "SorvaneMac/Screens/SetupForm.h"
#include "SorvaneMac/State/StudioState.h"

/// What all kinds of Latent Class ask for and tell.
namespace sorvane::MixtureControls {

inline constexpr std::int64_t fewestClasses = 2;
/// What the form offers; the comparison goes one further.
inline constexpr std::int64_t mostClasses = 5;

/// The indicators and the number of classes.
void add(SetupForm& form,
         const ImportedDataset& dataset,
         LatentClassFields& fields,
         LatentMixtureMode mode);

Guide guide();

}  // namespace sorvane::MixtureControls
