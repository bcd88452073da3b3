#include "SorvaneMac/Report/RichDocument.h"

#include <cstddef>
#include <string_view>

#include "SorvaneMac/Report/RTFReader.h"
#include "SorvaneMac/Report/RTFWriter.h"

namespace sorvane {
namespace {

bool isFigureAlone(const Paragraph& paragraph) {
    return paragraph.figure && paragraph.runs.empty();
}

/// What stands between two paragraphs that follow each other: a tab for each column that it
/// crosses.
std::string separator(const Paragraph& before, const Paragraph& after) {
    if (!before.block || !after.block || before.block->table != after.block->table ||
        before.block->startingRow != after.block->startingRow) {
        return "\n";
    }
    const int columns = after.block->startingColumn - before.block->startingColumn;
    return columns > 0 ? std::string(static_cast<std::size_t>(columns), '\t') : " ";
}

/// A cell's own tabs and line ends would be taken for the bounds of cells and rows.
void appendCellText(std::string_view text, std::string& out) {
    for (const char c : text) {
        out += c == '\t' || c == '\n' ? ' ' : c;
    }
}

}  // namespace

std::string RichDocument::plainText() const {
    std::string text;
    const Paragraph* previous = nullptr;
    for (const Paragraph& paragraph : paragraphs) {
        if (isFigureAlone(paragraph) && !paragraph.block) {
            continue;
        }
        if (previous != nullptr) {
            text += separator(*previous, paragraph);
        }
        for (const TextRun& run : paragraph.runs) {
            if (paragraph.block) {
                appendCellText(run.text, text);
            } else {
                text += run.text;
            }
        }
        previous = &paragraph;
    }
    if (previous != nullptr) {
        text += '\n';
    }
    return text;
}

std::vector<std::uint8_t> encode(const RichDocument& document) {
    const std::string rtf = RTFWriter::rtf(document);
    return {rtf.begin(), rtf.end()};
}

std::optional<RichDocument> decode(std::span<const std::uint8_t> bytes) {
    return RTFReader::document(std::string(bytes.begin(), bytes.end()));
}

}  // namespace sorvane
