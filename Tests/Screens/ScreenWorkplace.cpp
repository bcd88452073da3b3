#include "Tests/Screens/ScreenWorkplace.h"

#include <nlohmann/json.hpp>

namespace sorvane {

void ScreenWorkplace::set(const Settings& settings) {
    for (const auto& [name, text] : settings) {
        state.fields.find(name)->setJson(Json::parse(text));
    }
}

std::string ScreenWorkplace::value(const std::string& field) const {
    return state.fields.find(field)->json().dump();
}

std::map<std::string, std::string> ScreenWorkplace::values() const {
    std::map<std::string, std::string> all;
    for (const AnyField* field : state.fields.fields()) {
        if (field->name() != "dataset") {
            all[field->name()] = field->json().dump();
        }
    }
    return all;
}

void ScreenWorkplace::expectValues(const Settings& expected) const {
    for (const auto& [name, text] : expected) {
        EXPECT_EQ(value(name), Json::parse(text).dump()) << name;
    }
}

std::string ScreenWorkplace::result(StudioScreen screen, const std::string& member) const {
    return screens.at(screen).result().at(Json::json_pointer(member)).dump();
}

}  // namespace sorvane
