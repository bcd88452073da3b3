#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SorvaneMac/Report/InlineFigure.h"

namespace sorvane {

/// The part a typeface plays; which face that is, the platform decides.
enum class FontRole { system, monospaced };

struct TextStyle {
    FontRole font = FontRole::system;
    /// Absent: no font was chosen, as in text typed into an empty editor.
    std::optional<double> points{};
    bool bold = false;
    bool italic = false;
    bool underline = false;

    bool operator==(const TextStyle&) const = default;
};

/// A stretch of text in one style. A line feed inside it breaks the line, not the paragraph.
struct TextRun {
    std::string text{};
    TextStyle style{};

    bool operator==(const TextRun&) const = default;
};

enum class TextAlignment { left, center, right, justified };

/// The place of a paragraph in a table, and the rules drawn above and below its cell.
struct TextTableBlock {
    /// Paragraphs of the same table carry the same number.
    int table = 0;
    int startingRow = 0;
    int startingColumn = 0;
    int columnSpan = 1;
    /// In points; 0 draws nothing.
    double topBorder = 0;
    double bottomBorder = 0;

    bool operator==(const TextTableBlock&) const = default;
};

struct Paragraph {
    std::vector<TextRun> runs{};
    TextAlignment alignment = TextAlignment::left;
    /// In points.
    double spaceBefore = 0;
    double spaceAfter = 0;
    /// Set on headings and captions, which must not stand alone at the foot of a page.
    bool keepWithNext = false;
    std::optional<TextTableBlock> block{};
    /// Stands before the runs.
    std::optional<InlineFigure> figure{};

    bool operator==(const Paragraph&) const = default;
};

/// The assembled report: what the editor shows and what every exporter reads.
struct RichDocument {
    std::vector<Paragraph> paragraphs{};

    bool operator==(const RichDocument&) const = default;

    /// The text alone: a line a paragraph, a line a table row with tabs between its cells, no line
    /// for a figure.
    std::string plainText() const;
};

/// The bytes under which a document is stored, which are its RTF.
std::vector<std::uint8_t> encode(const RichDocument& document);

/// The document that stored bytes hold.
///
/// Failure    not RTF -> absent
std::optional<RichDocument> decode(std::span<const std::uint8_t> bytes);

}  // namespace sorvane
