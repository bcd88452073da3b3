#pragma once

#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneMac/Screens/StudioScreens.h"

namespace sorvane {

/// Field names to values, as JSON text.
using Settings = std::vector<std::pair<std::string, std::string>>;

/// What a seed gives: the fields as they stand before, and what they are to be afterwards.
struct SeedCase {
    int line;
    StudioScreen screen;
    Settings given;
    Settings expected;
};

/// A workspace of its own with its screens, whose fields are set and read by name.
class ScreenWorkplace {
public:
    void assign(std::initializer_list<std::string_view> names, VariableKind kind) {
        for (const std::string_view name : names) {
            state.assignVariable(state.dataset().variable(name)->id, kind);
        }
    }
    void set(const Settings& settings);
    /// The JSON text of a field.
    std::string value(const std::string& field) const;
    /// Those of all fields but the table.
    std::map<std::string, std::string> values() const;
    void expectValues(const Settings& expected) const;
    /// The JSON text of a screen's result, or of a member such as "/fit/n".
    std::string result(StudioScreen screen, const std::string& member = "") const;

    StudioState state{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens{state};
};

}  // namespace sorvane
