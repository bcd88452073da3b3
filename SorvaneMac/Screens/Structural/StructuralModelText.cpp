#include "SorvaneMac/Screens/Structural/StructuralModelText.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::StructuralModelText {

namespace {

constexpr std::string_view starterComment =
    "# lavaan-style syntax: =~ measures, ~ regresses, ~~ covaries\n";
constexpr std::size_t indicatorsPerFactor = 3;

/// The names from `first` on, quoted and added up; placeholders where there are too few.
std::string indicators(const std::vector<std::string>& numeric, std::size_t first) {
    const bool isEnough = numeric.size() >= first + indicatorsPerFactor;
    std::string sum;
    for (std::size_t at = first; at < first + indicatorsPerFactor; ++at) {
        sum += sum.empty() ? "" : " + ";
        sum += isEnough ? quotedName(numeric[at])
                        : "item" + std::string(1, static_cast<char>('1' + at));
    }
    return sum;
}

/// Without its digits and underscores a bare name is one run of letters and marks.
bool isBare(std::string_view name) {
    const std::vector<std::string> whole = UnicodeText::alphanumericPieces(name);
    std::size_t length = 0;
    for (const std::string& piece : whole) {
        length += piece.size();
    }
    std::size_t underscores = 0;
    for (const char c : name) {
        underscores += c == '_' ? 1U : 0U;
    }
    return !name.empty() && name.front() != '_' && length + underscores == name.size() &&
           UnicodeText::leadingDigitLength(name) == 0;
}

/// A comment goes from "#" to the end of the line or the next ";", each outside back-ticks.
bool endsInComment(std::string_view text) {
    bool isQuoted = false;
    bool isComment = false;
    for (const char c : text.substr(text.find_last_of('\n') + 1)) {
        isQuoted = isQuoted != (c == '`');
        if (!isQuoted && (c == '#' || c == ';')) {
            isComment = c == '#';
        }
    }
    return isComment;
}

/// A stretch of a model's text: a name, with its back-ticks where it has some, or what stands between.
struct Piece {
    std::string_view text;
    bool isName = false;

    /// Without back-ticks.
    std::string_view name() const {
        const bool isQuoted = text.size() > 1 && text.front() == '`' && text.back() == '`';
        return isQuoted ? text.substr(1, text.size() - 2) : text;
    }
};

/// The length of the piece that a text begins with.
std::size_t pieceLength(std::string_view text) {
    constexpr std::string_view between = "+*~=;#` \t\r\n";
    if (text.front() == '#') {
        return std::min(text.find_first_of("\n;"), text.size());
    }
    if (text.front() == '`') {
        const std::size_t end = text.find('`', 1);
        return end == std::string_view::npos ? text.size() : end + 1;
    }
    return std::max<std::size_t>(std::min(text.find_first_of(between), text.size()), 1);
}

std::vector<Piece> piecesOf(std::string_view text) {
    std::vector<Piece> pieces;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, pieceLength(text));
        const bool isDigit = piece.front() >= '0' && piece.front() <= '9';
        pieces.push_back({piece, !isDigit && piece.find_first_of("+*~=;# \t\r\n") != 0});
        text.remove_prefix(piece.size());
    }
    return pieces;
}

/// The names left of "=~".
bool isLatent(const std::vector<Piece>& pieces, std::string_view name) {
    const auto isBlank = [](const Piece& piece) {
        return piece.text.find_first_not_of(" \t") == std::string_view::npos;
    };
    for (auto piece = pieces.begin(); piece != pieces.end(); ++piece) {
        if (piece->isName && piece->name() == name) {
            const auto next = std::find_if_not(piece + 1, pieces.end(), isBlank);
            if (next != pieces.end() && next + 1 != pieces.end() && next->text == "=" &&
                (next + 1)->text == "~") {
                return true;
            }
        }
    }
    return false;
}

std::string mediationModel(const std::vector<std::string>& numeric) {
    const bool isEnough = numeric.size() >= 3;
    const std::string x = isEnough ? quotedName(numeric[0]) : "X";
    const std::string m = isEnough ? quotedName(numeric[1]) : "M";
    const std::string y = isEnough ? quotedName(numeric[2]) : "Y";
    return "# " + x + " -> " + m + " -> " + y + "\n" + m + " ~ " + x + "\n" + y + " ~ " + m +
           " + " + x;
}

}  // namespace

std::string_view rawValue(Template value) {
    switch (value) {
        case Template::oneFactor:
            return "cfa1";
        case Template::twoFactors:
            return "cfa2";
        case Template::mediation:
            break;
    }
    return "mediation";
}

std::string quotedName(std::string_view name) {
    return isBare(name) ? std::string(name) : "`" + std::string(name) + "`";
}

std::string starter(const std::vector<std::string>& numeric) {
    if (numeric.size() < indicatorsPerFactor) {
        return "factor =~ " + indicators({}, 0);
    }
    return std::string(starterComment) + "factor =~ " + indicators(numeric, 0);
}

std::string filled(Template wanted, const std::vector<std::string>& numeric) {
    switch (wanted) {
        case Template::oneFactor:
            return "# One-factor CFA\nfactor =~ " + indicators(numeric, 0);
        case Template::twoFactors:
            return "# Multi-factor CFA\nfactorA =~ " + indicators(numeric, 0) + "\nfactorB =~ " +
                   indicators(numeric, indicatorsPerFactor);
        case Template::mediation:
            return mediationModel(numeric);
    }
    return "";
}

std::string withName(std::string_view text, std::string_view name) {
    const std::string before(text.substr(0, text.find_last_not_of(" \t") + 1));
    if (before.empty() || before.ends_with('\n') || before.ends_with('*')) {
        return before + quotedName(name);
    }
    if (endsInComment(before)) {
        return before + "\n" + quotedName(name);
    }
    const bool awaitsName = before.ends_with('~') || before.ends_with('+');
    return before + (awaitsName ? " " : " + ") + quotedName(name);
}

std::string withRenamed(std::string_view text, std::string_view from, std::string_view to) {
    const std::vector<Piece> pieces = piecesOf(text);
    const bool isAmbiguous = isLatent(pieces, from) || isLatent(pieces, to);
    std::string renamed;
    for (const Piece& piece : pieces) {
        const bool isMeant = !isAmbiguous && piece.isName && piece.name() == from;
        renamed += isMeant ? quotedName(to) : std::string(piece.text);
    }
    return renamed;
}

}  // namespace sorvane::StructuralModelText
