#pragma once

#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "SorvaneCore/Project/RecordJson.h"
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
    void set(const Settings& settings) {
        for (const auto& [name, value] : settings) {
            state.fields.find(name)->setJson(Json::parse(value));
        }
    }
    Json value(const std::string& field) { return state.fields.find(field)->json(); }
    std::map<std::string, Json> values() {
        std::map<std::string, Json> all;
        for (const AnyField* field : state.fields.fields()) {
            if (field->name() != "dataset") {
                all[field->name()] = field->json();
            }
        }
        return all;
    }
    void expectValues(const Settings& expected) {
        for (const auto& [name, text] : expected) {
            EXPECT_EQ(value(name), Json::parse(text)) << name;
        }
    }

    StudioState state{std::filesystem::path(SORVANE_SOURCE_DIR "/Resources")};
    StudioScreens screens{state};
};

}  // namespace sorvane
