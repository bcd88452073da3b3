#include "SorvaneCore/Project/JsonQuoting.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace sorvane {

namespace {

/// Whether a character stands for itself between quotes, whatever its neighbours.
bool isPlain(char c) {
    return c >= ' ' && c != '"' && c != '\\' && static_cast<unsigned char>(c) < 0x7F;
}

}  // namespace

void appendJsonString(std::string& out, std::string_view text) {
    if (std::all_of(text.begin(), text.end(), isPlain)) {
        out += '"';
        out += text;
        out += '"';
    } else {
        using nlohmann::json;
        out += json(text).dump(-1, ' ', false, json::error_handler_t::replace);
    }
}

std::string jsonString(std::string_view text) {
    std::string quoted;
    appendJsonString(quoted, text);
    return quoted;
}

}  // namespace sorvane
