#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

/// The order in which people look for labels in a list.
namespace sorvane::LabelOrder {

/// The indexes of the labels in ascending order, equal labels in the order they came in.
///
/// Method     the language-neutral collation of Unicode, case ignored; digits are read one by one,
///            so that "10" comes before "2"
std::vector<std::size_t> caseInsensitive(std::span<const std::string> labels);

}  // namespace sorvane::LabelOrder
