#pragma once

#include <optional>
#include <string>

#include "SorvaneMac/State/VariableEditorFields.h"

/// Typed recoding rules made into rules, and rules made into text.
namespace sorvane::RecodeDrafts {

/// Absent while the old values are not numbers parted by commas, or the new value is no number.
std::optional<ValueRecodeRule> valueRule(const RecodeDraft& draft);
/// Absent while a bound or the new value is no number, or the bounds hold nothing between them.
std::optional<RangeRecodeRule> rangeRule(const RecodeDraft& draft);

/// "1, 2 → 9"; "→ missing" where the output is absent.
std::string text(const ValueRecodeRule& rule);
/// "18 ≤ x < 30 → 1".
std::string text(const RangeRecodeRule& rule);

}  // namespace sorvane::RecodeDrafts
