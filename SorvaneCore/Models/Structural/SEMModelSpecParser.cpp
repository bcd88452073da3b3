#include "SorvaneCore/Models/Structural/SEMModelSpecParser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

SEMSyntaxError noOperator(std::string_view statement) {
    return SEMSyntaxError("Line has no recognized operator (=~, ~, or ~~): \"" +
                          std::string(statement) + "\"");
}

SEMSyntaxError emptyLeftSide(std::string_view statement) {
    return SEMSyntaxError("Empty left-hand side in: \"" + std::string(statement) + "\"");
}

SEMSyntaxError emptyRightSide(std::string_view statement) {
    return SEMSyntaxError("Empty right-hand side in: \"" + std::string(statement) + "\"");
}

SEMSyntaxError emptyTerm(std::string_view statement) {
    return SEMSyntaxError("Empty term in right-hand side of: \"" + std::string(statement) + "\"");
}

SEMSyntaxError invalidLeftName(std::string_view name) {
    return SEMSyntaxError("Invalid left-hand side name \"" + std::string(name) + "\"");
}

SEMSyntaxError invalidRightName(std::string_view name) {
    return SEMSyntaxError("Invalid right-hand side name \"" + std::string(name) + "\"");
}

SEMSyntaxError notFinite(std::string_view multiplier, std::string_view name) {
    return SEMSyntaxError("The multiplier \"" + std::string(multiplier) + "\" of \"" +
                          std::string(name) + "\" is not a finite number.");
}

SEMSyntaxError emptyModel() {
    return SEMSyntaxError("Model is empty: no parsable terms found.");
}

constexpr char quote = '`';

/// Where a text first stands outside back-ticks; npos where it does not.
std::size_t indexOutsideBackticks(std::string_view text, std::string_view wanted) {
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        isQuoted = isQuoted != (text[i] == quote);
        if (!isQuoted && text.substr(i).starts_with(wanted)) {
            return i;
        }
    }
    return std::string_view::npos;
}

std::vector<std::string_view> splitOutsideBackticks(std::string_view text,
                                                    std::string_view separator) {
    std::vector<std::string_view> pieces;
    for (std::size_t at = 0; at != std::string_view::npos;) {
        at = indexOutsideBackticks(text, separator);
        pieces.push_back(text.substr(0, at));
        text.remove_prefix(at == std::string_view::npos ? text.size() : at + separator.size());
    }
    return pieces;
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    for (std::size_t at = 0; at != std::string_view::npos;) {
        at = text.find_first_of("\r\n");
        lines.push_back(text.substr(0, at));
        text.remove_prefix(at == std::string_view::npos ? text.size() : at + 1);
    }
    return lines;
}

std::vector<std::string_view> statementsOf(std::string_view text) {
    std::vector<std::string_view> statements;
    for (const std::string_view line : linesOf(text)) {
        for (const std::string_view piece : splitOutsideBackticks(line, ";")) {
            const std::string_view statement =
                UnicodeText::trimmed(piece.substr(0, indexOutsideBackticks(piece, "#")));
            if (!statement.empty()) {
                statements.push_back(statement);
            }
        }
    }
    return statements;
}

/// Without its back-ticks; absent for what is no name.
std::optional<std::string> nameOf(std::string_view text) {
    if (text.starts_with(quote)) {
        const bool isWhole = text.size() > 2 && text.find(quote, 1) == text.size() - 1;
        return isWhole ? std::optional(std::string(text.substr(1, text.size() - 2))) : std::nullopt;
    }
    const bool isValid = UnicodeText::isWord(text) &&
                         (text.front() == '_' || UnicodeText::leadingLetterLength(text) > 0);
    return isValid ? std::optional(std::string(text)) : std::nullopt;
}

struct OperatorPlace {
    SEMSyntaxOperator op = SEMSyntaxOperator::measurement;
    std::size_t at = 0;
};

OperatorPlace operatorOf(std::string_view statement) {
    using enum SEMSyntaxOperator;
    // A "~" would be found inside the two others.
    for (const SEMSyntaxOperator op : {measurement, covariance, regression}) {
        const std::size_t at = indexOutsideBackticks(statement, rawValue(op));
        if (at != std::string_view::npos) {
            return {.op = op, .at = at};
        }
    }
    throw noOperator(statement);
}

/// A name, or a number and a name with "*" between.
void readRightTerm(SEMSyntaxTerm& term, std::string_view piece) {
    std::string_view name = piece;
    const std::size_t star = indexOutsideBackticks(piece, "*");
    if (star != std::string_view::npos) {
        const std::string_view multiplier = UnicodeText::trimmed(piece.substr(0, star));
        term.fixedValue = NumberText::parse(multiplier);
        if (term.fixedValue) {
            name = UnicodeText::trimmed(piece.substr(star + 1));
            if (!std::isfinite(*term.fixedValue)) {
                throw notFinite(multiplier, name);
            }
        }
    }
    std::optional<std::string> read = nameOf(name);
    if (!read) {
        throw invalidRightName(name);
    }
    term.rhs = std::move(*read);
}

void addOnce(std::vector<std::string>& names, const std::string& name) {
    if (std::ranges::find(names, name) == names.end()) {
        names.push_back(name);
    }
}

void addTerm(SEMParsedSpec& spec, SEMSyntaxTerm term) {
    addOnce(spec.allVariables, term.lhs);
    addOnce(spec.allVariables, term.rhs);
    if (term.op == SEMSyntaxOperator::measurement) {
        addOnce(spec.latentVariables, term.lhs);
    }
    spec.terms.push_back(std::move(term));
}

void readStatement(SEMParsedSpec& spec, std::string_view statement) {
    const OperatorPlace place = operatorOf(statement);
    const std::string_view left = UnicodeText::trimmed(statement.substr(0, place.at));
    const std::string_view right =
        UnicodeText::trimmed(statement.substr(place.at + rawValue(place.op).size()));
    if (left.empty()) {
        throw emptyLeftSide(statement);
    }
    if (right.empty()) {
        throw emptyRightSide(statement);
    }
    const std::optional<std::string> lhs = nameOf(left);
    if (!lhs) {
        throw invalidLeftName(left);
    }
    for (const std::string_view piece : splitOutsideBackticks(right, "+")) {
        const std::string_view trimmed = UnicodeText::trimmed(piece);
        if (trimmed.empty()) {
            throw emptyTerm(statement);
        }
        SEMSyntaxTerm term{.lhs = *lhs, .op = place.op};
        readRightTerm(term, trimmed);
        addTerm(spec, std::move(term));
    }
}

}  // namespace

std::string_view rawValue(SEMSyntaxOperator op) {
    static constexpr std::array<std::string_view, 3> texts = {"=~", "~", "~~"};
    return texts[static_cast<std::size_t>(op)];
}

SEMParsedSpec SEMModelSpecParser::parse(std::string_view text) {
    SEMParsedSpec spec;
    for (const std::string_view statement : statementsOf(text)) {
        readStatement(spec, statement);
    }
    if (spec.terms.empty()) {
        throw emptyModel();
    }
    return spec;
}

}  // namespace sorvane
