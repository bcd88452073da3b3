#pragma once

#include <string_view>
#include <vector>

#include "SorvaneCore/Project/MethodFile.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// A method record as the user sees it before it is saved.
namespace sorvane::MethodPreview {

inline constexpr std::string_view purpose =
    "Analyses are designed to save method metadata as .svmethod files.";

/// The rows of the preview, each under the name of its entry.
std::vector<Fact> rows(const MethodFile& record);

}  // namespace sorvane::MethodPreview
