#pragma once

#include <string>
#include <string_view>

namespace sorvane {

/// Appends text as XML 1.0 takes it: markup characters as entities, forbidden characters left out,
/// bytes that are not UTF-8 replaced by U+FFFD. Tabs and line feeds stay.
void appendEscapedXML(std::string_view text, std::string& xml);

}  // namespace sorvane
