#include "SorvaneMac/Report/RTFRowDefinition.h"

#include <algorithm>
#include <utility>

namespace sorvane {
namespace {

constexpr double twipsPerPoint = 20;
constexpr double defaultBorder = 0.5;
/// The widest rule of the format, in twips.
constexpr int widestBorder = 255;

}  // namespace

bool RTFRowDefinition::apply(std::string_view control, int value) {
    if (control == "trowd") {
        *this = {};
    } else if (control == "clmrg") {
        pending_.mergedWithPrevious = true;
    } else if (control == "clbrdrt") {
        side_ = Side::top;
    } else if (control == "clbrdrb") {
        side_ = Side::bottom;
    } else if (control == "clbrdrl" || control == "clbrdrr") {
        side_ = Side::none;
    } else if (control == "cellx") {
        pending_.rightEdge = value;
        cells_.push_back(std::exchange(pending_, {}));
        side_ = Side::none;
    } else {
        return applyBorder(control, value);
    }
    return true;
}

bool RTFRowDefinition::applyBorder(std::string_view control, int value) {
    double* const width = border();
    if (width == nullptr) {
        return false;
    }
    if (control == "brdrs") {
        *width = *width > 0 ? *width : defaultBorder;
    } else if (control == "brdrw") {
        *width = std::clamp(value, 0, widestBorder) / twipsPerPoint;
    } else if (control == "brdrnone" || control == "brdrnil") {
        *width = 0;
        side_ = Side::none;
    } else {
        return false;
    }
    return true;
}

double* RTFRowDefinition::border() {
    switch (side_) {
        case Side::top:
            return &pending_.topBorder;
        case Side::bottom:
            return &pending_.bottomBorder;
        case Side::none:
            break;
    }
    return nullptr;
}

}  // namespace sorvane
