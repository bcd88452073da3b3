#pragma once

#include <optional>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Models/Structural/SEMModel.h"
#include "SorvaneMac/Screens/ScreenContent.h"

/// What a model's text says about a table, while it is being typed.
namespace sorvane::StructuralModelCheck {

/// One of the two.
struct Reading {
    std::optional<SEMModel> model;
    /// Why the text is no model of the table's numeric columns.
    std::optional<Gate> gate;
};

Reading read(std::string_view text, const ImportedDataset& dataset);

}  // namespace sorvane::StructuralModelCheck
