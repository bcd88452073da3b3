#include "SorvaneMac/State/RecodeDrafts.h"

#include <cmath>
#include <string_view>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/State/LogText.h"

namespace sorvane::RecodeDrafts {

namespace {

std::optional<double> numberIn(std::string_view text) {
    const std::optional<double> number = NumberText::parse(UnicodeText::trimmed(text));
    return number && std::isfinite(*number) ? number : std::nullopt;
}

bool isBlank(std::string_view text) {
    return UnicodeText::trimmed(text).empty();
}

/// Whether the text of the new value stands for something: a number, or missing.
bool isOutput(std::string_view text) {
    return isBlank(text) || numberIn(text).has_value();
}

std::string outputText(const std::optional<double>& output) {
    return " → " + (output ? LogText::number(*output) : std::string("missing"));
}

}  // namespace

std::optional<ValueRecodeRule> valueRule(const RecodeDraft& draft) {
    ValueRecodeRule rule{.id = Uuid::fresh(), .sources = {}, .output = numberIn(draft.output)};
    std::string_view rest = draft.sources;
    while (true) {
        const std::size_t comma = rest.find(',');
        const std::optional<double> number = numberIn(rest.substr(0, comma));
        if (!number) {
            return std::nullopt;
        }
        rule.sources.push_back(*number);
        if (comma == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(comma + 1);
    }
    return isOutput(draft.output) ? std::optional(rule) : std::nullopt;
}

std::optional<RangeRecodeRule> rangeRule(const RecodeDraft& draft) {
    const std::optional<double> lower = numberIn(draft.lower);
    const std::optional<double> upper = numberIn(draft.upper);
    if (!lower || !upper || !isOutput(draft.output)) {
        return std::nullopt;
    }
    const bool isPoint = *lower == *upper && draft.lowerInclusive && draft.upperInclusive;
    if (!isPoint && !(*lower < *upper)) {
        return std::nullopt;
    }
    return RangeRecodeRule{.id = Uuid::fresh(),
                           .lower = *lower,
                           .upper = *upper,
                           .lowerInclusive = draft.lowerInclusive,
                           .upperInclusive = draft.upperInclusive,
                           .output = numberIn(draft.output)};
}

std::string text(const ValueRecodeRule& rule) {
    std::string values;
    for (const double source : rule.sources) {
        values += values.empty() ? "" : ", ";
        values += LogText::number(source);
    }
    return values + outputText(rule.output);
}

std::string text(const RangeRecodeRule& rule) {
    return LogText::number(rule.lower) + (rule.lowerInclusive ? " ≤ x " : " < x ") +
           (rule.upperInclusive ? "≤ " : "< ") + LogText::number(rule.upper) +
           outputText(rule.output);
}

}  // namespace sorvane::RecodeDrafts
