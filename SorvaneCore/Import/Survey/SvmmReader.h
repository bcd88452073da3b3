#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane {

/// What a survey package holds.
struct SvmmPackage {
    std::string title;
    std::vector<std::string> headers;
    TextTable rows;
    /// Column name to role, as the package writes it.
    std::map<std::string, std::string> roles;
    std::vector<std::string> notes;

    bool operator==(const SvmmPackage&) const = default;
};

/// Reads survey packages in JSON (.svmm).
namespace SvmmReader {

/// The package.
///
/// Returns    without headers when the package embeds no table; a note then says where the data are
/// Failure    no JSON object, or one of another kind; a table of far more cells than the bytes can
///            mean -> absent
std::optional<SvmmPackage> read(std::string_view bytes);

}  // namespace SvmmReader

}  // namespace sorvane
