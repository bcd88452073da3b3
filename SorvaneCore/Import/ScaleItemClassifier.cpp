#include "SorvaneCore/Import/ScaleItemClassifier.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "SorvaneCore/Dataset/ColumnProfile.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/NameTokens.h"
#include "SorvaneCore/Import/ScaleItemKeywords.h"
#include "SorvaneCore/Import/ScaleItemValues.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Numerics/ParallelFor.h"

namespace sorvane::ScaleItemClassifier {

namespace {

constexpr std::size_t mostReasons = 4;

std::string likertReason(const LikertRange& range) {
    return "Bounded " + NumberText::integer(range.minimum) + "-" +
           NumberText::integer(range.maximum) + " Likert range";
}

std::string keywordReason(std::string_view keyword, std::string_view kind) {
    return "Name contains '" + std::string(keyword) + "'" + std::string(kind);
}

/// The first keyword of the list in a text. One of several words is looked for anywhere in the
/// text, any other must be a whole word of it.
std::optional<std::string_view> firstKeyword(std::span<const std::string_view> keywords,
                                             std::string_view text,
                                             const NameTokens& tokens) {
    const auto found =
        std::find_if(keywords.begin(), keywords.end(), [&](std::string_view keyword) {
            const bool isPhrase = keyword.find_first_of(" -") != keyword.npos;
            return isPhrase ? text.find(keyword) != text.npos : tokens.contains(keyword);
        });
    return found == keywords.end() ? std::nullopt : std::optional(*found);
}

/// The running scores of one column.
struct Scores {
    double scale = 0.5;
    double identifier = 0.0;
    double informational = 0.0;
    std::vector<std::string> reasons = {};

    void addScale(double weight, std::string reason) {
        scale += weight;
        reasons.push_back(std::move(reason));
    }
    void moveToIdentifier(double weight, std::string reason) {
        scale -= weight;
        identifier += weight;
        reasons.push_back(std::move(reason));
    }
    void moveToInformational(double weight, std::string reason) {
        scale -= weight;
        informational += weight;
        reasons.push_back(std::move(reason));
    }
};

Scores scoresOfName(std::string_view columnName, std::string_view questionText) {
    const std::string words = std::string(columnName) + " " + std::string(questionText);
    const std::string text = UnicodeText::lowerCased(words);
    const NameTokens tokens = tokenize(text);
    const auto scaleHit = firstKeyword(scaleKeywords, text, tokens);
    const auto infoHit = firstKeyword(informationalKeywords, text, tokens);
    if (!infoHit) {
        return scaleHit ? Scores{.scale = 0.75, .reasons = {keywordReason(*scaleHit, "")}}
                        : Scores{};
    }
    const bool isMetadata = std::find(idMetadataKeywords.begin(), idMetadataKeywords.end(),
                                      *infoHit) != idMetadataKeywords.end();
    return isMetadata ? Scores{.scale = 0.2,
                               .identifier = 0.3,
                               .reasons = {keywordReason(*infoHit, " (ID / metadata)")}}
                      : Scores{.scale = 0.2,
                               .informational = 0.3,
                               .reasons = {keywordReason(*infoHit, " (demographic)")}};
}

void weighRange(const ScaleItemValues& values, bool neighborSharesLikert, Scores& scores) {
    if (!values.likertRange) {
        return;
    }
    scores.addScale(0.32, likertReason(*values.likertRange));
    if (neighborSharesLikert) {
        scores.addScale(0.12, "Shares Likert range with neighbor");
    }
}

void weighVariety(const ScaleItemValues& values, Scores& scores) {
    if (values.count == 0) {
        return;
    }
    const double share = static_cast<double>(values.unique) / static_cast<double>(values.count);
    if (share < 0.9 && values.unique >= 2 && values.unique <= 12) {
        scores.scale += 0.05;
    }
    if (values.count > 3 && share >= 0.9) {
        scores.moveToIdentifier(0.3, "Mostly unique values (looks like an ID)");
    }
    if (values.allHoldAtSigns) {
        scores.moveToIdentifier(0.35, "Values look like emails");
    } else if (values.lookLikeDates) {
        scores.moveToIdentifier(0.3, "Values look like dates / timestamps");
    }
}

void weighContent(const ScaleItemValues& values, Scores& scores) {
    if (values.lookLikeLongText) {
        scores.moveToInformational(0.3, "Long free-text values");
    }
    if (!values.likertRange && values.isMostlyNumeric && values.numbers &&
        (values.hasFraction || values.numbers->maximum > 12.0 || values.numbers->minimum < 0.0 ||
         values.numbers->maximum - values.numbers->minimum > 10.0)) {
        scores.moveToInformational(0.22, "Numeric range looks demographic / count, not a scale");
    }
    if (values.areBoolean) {
        scores.moveToInformational(0.18, "Boolean / yes-no values");
    } else if (values.unique <= 1) {
        scores.moveToInformational(0.2, "Single distinct value");
    }
}

ScaleItemClassification verdict(const std::string& columnName, Scores scores) {
    using enum ScaleItemClassification::Category;
    ScaleItemClassification result;
    result.columnName = columnName;
    result.autoSelectAsScale = scores.scale >= 0.8;
    if (scores.scale >= 0.8) {
        result.category = likelyScale;
    } else if (scores.scale >= 0.55) {
        result.category = unclear;
    } else if (scores.informational > scores.identifier || scores.identifier <= 0.0) {
        result.category = likelyInformational;
    } else {
        result.category = likelyIDMetadata;
    }
    result.scaleProbability = std::round(std::clamp(scores.scale, 0.0, 1.0) * 100.0) / 100.0;
    if (scores.reasons.empty()) {
        scores.reasons.emplace_back("No strong scale or informational signals");
    }
    scores.reasons.resize(std::min(scores.reasons.size(), mostReasons));
    result.reasons = std::move(scores.reasons);
    return result;
}

bool neighborSharesLikert(std::span<const ScaleItemValues> columns, std::size_t index) {
    const std::optional<LikertRange>& range = columns[index].likertRange;
    const auto shares = [&](std::size_t other) {
        return columns[other].likertRange == range;
    };
    return range &&
           ((index > 0 && shares(index - 1)) || (index + 1 < columns.size() && shares(index + 1)));
}

}  // namespace

std::vector<ScaleItemClassification> classify(
    std::span<const std::string> headers,
    std::span<const TextTable::Column> columns,
    const std::map<std::string, std::string>& questionText) {
    const TextTable::Column empty = TextColumn::blank(0);
    std::vector<ScaleItemValues> values(headers.size());
    parallelFor(headers.size(), hardwareThreads(), [&](std::size_t index) {
        values[index] = ScaleItemValues::of(index < columns.size() ? *columns[index] : *empty);
    });
    std::vector<ScaleItemClassification> result;
    result.reserve(headers.size());
    for (std::size_t index = 0; index < headers.size(); ++index) {
        const auto question = questionText.find(headers[index]);
        Scores scores = scoresOfName(
            headers[index], question == questionText.end() ? std::string() : question->second);
        weighRange(values[index], neighborSharesLikert(values, index), scores);
        weighVariety(values[index], scores);
        weighContent(values[index], scores);
        result.push_back(verdict(headers[index], std::move(scores)));
    }
    return result;
}

}  // namespace sorvane::ScaleItemClassifier
