#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// What a field-study package holds.
struct SvmmFieldPackage {
    std::string title;
    std::vector<std::string> headers;
    TextTable rows;
    /// Column name to the text of its item.
    std::map<std::string, std::string> labels;
    /// Column name to role, as the package writes it.
    std::map<std::string, std::string> roles;
    std::vector<std::string> notes;

    bool operator==(const SvmmFieldPackage&) const = default;
};

/// Reads field-study packages, archives with a manifest (.svmmfield).
namespace SvmmFieldReader {

/// The package: a column per item of the quantitative instrument, then one per entry of the cases'
/// metadata; a row per case.
///
/// Returns    without headers when there are no cases or no answers; a note then says which
/// Failure    no manifest, one of another format; a table of far more cells than the bytes can mean
///            -> absent
std::optional<SvmmFieldPackage> read(std::string_view bytes);

}  // namespace SvmmFieldReader

}  // namespace sorvane
