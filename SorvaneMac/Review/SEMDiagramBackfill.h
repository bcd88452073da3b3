#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneMac/Report/ReportItem.h"

/// The path diagram of a structural model, read back from the table of its parameters; for findings
/// that were staged without one.
namespace sorvane::SEMDiagramBackfill {

/// Whether the table has a column "Parameter" and one "Std." or "Std", in any case.
bool isSEMTable(const ReportTable& table);

/// The parameters that the rows spell, with their standardized values.
///
/// Returns    latent: what "=~" stands behind; observed: all else that a parameter names, in the
///            order of the rows
/// Failure    no such table, or no row that spells a parameter -> absent
std::optional<SEMDiagramPayload> payload(const ReportTable& table);

/// The two sides and the operator of a text such as "visual =~ x1"; absent for any other.
std::optional<SEMDiagramPayload::Param> parseParameter(std::string_view text);
/// The number of a cell, without stars; absent for "--" and any other text.
std::optional<double> parseNumber(std::string_view cell);
/// What a table's note says of the fit, without what stands around it; absent where it says
/// nothing.
std::optional<std::string> fitSummary(const std::optional<std::string>& note);

}  // namespace sorvane::SEMDiagramBackfill
