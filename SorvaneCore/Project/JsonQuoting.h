#pragma once

#include <string>
#include <string_view>

namespace sorvane {

/// Appends a text as a JSON string, quotes included.
///
/// Bytes that are not UTF-8 come out as the replacement character.
void appendJsonString(std::string& out, std::string_view text);
std::string jsonString(std::string_view text);

}  // namespace sorvane
