#include "SorvaneCore/Import/VariableClassifier.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/NameTokens.h"
#include "SorvaneCore/Import/ProfiledColumns.h"

namespace sorvane {

namespace {

constexpr std::array<std::string_view, 7> ignoreTokens = {
    "exclude", "excluded", "ignore", "ignored", "omit", "skip", "unused"};
constexpr std::array<std::string_view, 9> administrativeTokens = {
    "id", "identifier", "uuid", "email", "name", "date", "time", "timestamp", "ip"};
constexpr std::array<std::string_view, 7> demographicTokens = {
    "age", "degree", "education", "ethnicity", "gender", "race", "sex"};
constexpr std::array<std::string_view, 21> groupingTokens = {
    "arm",    "category", "class", "cohort",   "condition", "department", "division",
    "grade",  "group",    "level", "location", "program",   "region",     "role",
    "school", "section",  "site",  "status",   "team",      "tenure",     "treatment"};
constexpr std::array<std::string_view, 8> outcomeTokens = {
    "achievement", "outcome", "performance", "rating", "result", "satisfaction", "score", "total"};
constexpr std::array<std::string_view, 10> textResponseTokens = {
    "comment", "comments", "description", "essay",    "feedback",
    "note",    "notes",    "open",        "response", "text"};
constexpr std::array<std::string_view, 9> itemTokens = {
    "indicator", "item", "measure", "prompt", "q", "question", "scale", "subscale", "survey"};

constexpr std::string_view ignoredWarning =
    "Ignored fields are excluded until manually assigned another role.";
constexpr std::string_view administrativeWarning =
    "Administrative fields are excluded from reliability evidence.";
constexpr std::string_view textResponseWarning =
    "Text response fields are excluded from reliability unless recoded as items.";
constexpr std::string_view backgroundWarning =
    "Background variables are not psychometric items by default.";
constexpr std::string_view groupingWarning =
    "Grouping/status variables are excluded from reliability unless reclassified.";
constexpr std::string_view freeFormWarning =
    "Free-form fields are excluded from reliability unless recoded as items.";
constexpr std::string_view likertWarning =
    "Likert-like numeric range detected; confirm the item belongs to a construct.";
constexpr std::string_view numericFieldWarning =
    "Numeric field was not named as an outcome or item; assign a research role before analysis.";
constexpr std::string_view numericCodesWarning =
    "Numeric category codes detected; assign Grouping, Outcome, or Item before analysis.";

/// The share of numbers from which a column counts as numeric.
constexpr double mostlyNumeric = 0.85;
constexpr double longMeanCharacters = 45.0;
constexpr std::size_t longestShortText = 89;

/// What the rules look at.
struct Evidence {
    NameTokens tokens;
    std::string lowerName;
    const TextColumn& column;
    const ColumnProfile& profile;

    template <std::size_t size>
    bool hasToken(const std::array<std::string_view, size>& words) const {
        return std::any_of(words.begin(), words.end(),
                           [this](std::string_view word) { return tokens.contains(word); });
    }
    double numericRatio() const {
        return profile.nonMissingCount == 0 ? 0.0
                                            : static_cast<double>(profile.numericCount) /
                                                  static_cast<double>(profile.nonMissingCount);
    }
    bool isNumeric() const { return numericRatio() >= mostlyNumeric; }
    std::int64_t categoryLimit() const {
        const std::int64_t n = profile.nonMissingCount;
        return n < 6 ? 2 : n < 60 ? n / 3 : 20;
    }
};

struct Role {
    VariableKind kind;
    std::string_view warning;
};

bool isIgnored(const Evidence& evidence) {
    return evidence.hasToken(ignoreTokens) || evidence.lowerName.starts_with("ignore_") ||
           evidence.lowerName.starts_with("exclude_");
}

bool isAdministrative(const Evidence& evidence) {
    const std::string& name = evidence.lowerName;
    return evidence.hasToken(administrativeTokens) || name.ends_with("_id") ||
           name.starts_with("id_") || name == "id";
}

bool looksLikeLongText(const Evidence& evidence) {
    const ColumnProfile& profile = evidence.profile;
    const auto count = static_cast<double>(profile.nonMissingCount);
    // A text has at most as many characters as bytes: most columns are settled by that.
    if (profile.nonMissingCount == 0 ||
        (static_cast<double>(profile.totalBytes) < longMeanCharacters * count &&
         profile.longestBytes <= longestShortText)) {
        return false;
    }
    const CharacterCounts characters = characterCounts(evidence.column);
    return static_cast<double>(characters.total) / count >= longMeanCharacters ||
           characters.longest > longestShortText;
}

/// The inferred range, or nothing where the cells are not mostly numbers.
std::optional<ScaleRange> inferredRange(const Evidence& evidence) {
    const std::optional<NumericSummary>& summary = evidence.profile.numericSummary;
    if (!summary || !evidence.isNumeric()) {
        return std::nullopt;
    }
    return ScaleRange{.minimum = summary->minimum, .maximum = summary->maximum};
}

bool isLikertLike(const std::optional<ScaleRange>& range, std::int64_t uniqueCount) {
    if (!range || !range->minimum || !range->maximum) {
        return false;
    }
    const double low = std::round(*range->minimum);
    const double high = std::round(*range->maximum);
    if (low != *range->minimum || high != *range->maximum) {
        return false;
    }
    const bool isUsual = (low == 1 && (high == 5 || high == 7)) || (low == 0 && high == 10);
    return isUsual || (high - low <= 10 && uniqueCount < 12);
}

/// One to six letters, "_" or "-" or neither, digits, at most one letter: "q1", "item_12",
/// "anx-3b".
bool isNumberedName(std::string_view name) {
    const auto isLetter = [](char c) {
        return c >= 'a' && c <= 'z';
    };
    constexpr std::size_t mostLetters = 6;
    std::size_t position = 0;
    while (position < name.size() && isLetter(name[position])) {
        ++position;
    }
    if (position == 0 || position > mostLetters) {
        return false;
    }
    if (position < name.size() && (name[position] == '_' || name[position] == '-')) {
        ++position;
    }
    const std::size_t firstDigit = position;
    while (const std::size_t length = UnicodeText::leadingDigitLength(name.substr(position))) {
        position += length;
    }
    if (position == firstDigit) {
        return false;
    }
    if (position < name.size() && isLetter(name[position])) {
        ++position;
    }
    return position == name.size();
}

bool looksLikeItemName(const Evidence& evidence) {
    return evidence.hasToken(itemTokens) ||
           isNumberedName(UnicodeText::trimmed(evidence.lowerName));
}

Role textRole(const Evidence& evidence) {
    const bool isCategory = evidence.profile.uniqueCount <= evidence.categoryLimit();
    return isCategory ? Role{VariableKind::grouping, {}}
                      : Role{VariableKind::textResponse, freeFormWarning};
}

Role numericRole(const Evidence& evidence) {
    const std::int64_t uniqueCount = evidence.profile.uniqueCount;
    if (isLikertLike(inferredRange(evidence), uniqueCount) && looksLikeItemName(evidence)) {
        return {VariableKind::psychometricItem, likertWarning};
    }
    const bool isMeasured = evidence.profile.hasFraction || uniqueCount > evidence.categoryLimit();
    return {VariableKind::status, isMeasured ? numericFieldWarning : numericCodesWarning};
}

/// The rules, in their order.
Role role(const Evidence& evidence) {
    if (isIgnored(evidence)) {
        return {VariableKind::exclude, ignoredWarning};
    }
    if (isAdministrative(evidence)) {
        return {VariableKind::administrative, administrativeWarning};
    }
    if (evidence.hasToken(textResponseTokens) &&
        (!evidence.isNumeric() || looksLikeLongText(evidence))) {
        return {VariableKind::textResponse, textResponseWarning};
    }
    if (evidence.hasToken(demographicTokens)) {
        return {VariableKind::demographicBackground, backgroundWarning};
    }
    if (evidence.isNumeric() && evidence.hasToken(outcomeTokens)) {
        return {VariableKind::outcome, {}};
    }
    if (evidence.hasToken(groupingTokens)) {
        return {VariableKind::grouping, groupingWarning};
    }
    if (looksLikeLongText(evidence)) {
        return {VariableKind::textResponse, textResponseWarning};
    }
    return evidence.isNumeric() ? numericRole(evidence) : textRole(evidence);
}

}  // namespace

DataVariable VariableClassifier::classify(std::string_view name, const TextColumn& column) const {
    const ColumnProfile& profile = column.profile();
    const Evidence evidence{.tokens = tokenize(name),
                            .lowerName = UnicodeText::lowerCased(name),
                            .column = column,
                            .profile = profile};
    const Role decided = role(evidence);
    DataVariable variable;
    variable.id = Uuid::fresh();
    variable.name = name;
    variable.inferredType = decided.kind;
    variable.assignedType = decided.kind;
    variable.scaleRange = inferredRange(evidence);
    variable.includeInReliability = isReliabilityEligible(decided.kind);
    variable.includeInDescriptives = includedInDescriptivesByDefault(decided.kind);
    variable.missingCount = profile.missingCount;
    variable.nonMissingCount = profile.nonMissingCount;
    variable.uniqueCount = profile.uniqueCount;
    variable.numericSummary = profile.numericSummary;
    variable.sampleValues = profile.sampleValues;
    if (!decided.warning.empty()) {
        variable.warnings.emplace_back(decided.warning);
    }
    return variable;
}

DataVariable VariableClassifier::classify(std::string_view name,
                                          std::span<const std::string> values) const {
    return classify(name, *TextColumn::of(values));
}

std::vector<DataVariable> VariableClassifier::classify(std::span<const std::string> headers,
                                                       const TextTable& rows) const {
    profileColumns(rows);
    std::vector<DataVariable> variables;
    variables.reserve(headers.size());
    for (std::size_t column = 0; column < headers.size(); ++column) {
        variables.push_back(classify(headers[column], rows.column(column)));
    }
    return variables;
}

}  // namespace sorvane
