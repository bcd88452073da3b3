#pragma once

#include <string>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::RTFWriter {

/// The document as Rich Text: fonts, sizes, bold, italic, underline, spacing, tables with their
/// rules, and figures.
///
/// Method     ASCII only, other characters as \u; lengths in twentieths of a point; an empty
///            paragraph is put between two tables that touch, which RTF would join
/// Returns    text that `RTFReader::document` turns back into an equal document, where tables are
///            numbered from 1 in order and neighbouring runs differ in style
std::string rtf(const RichDocument& document);

}  // namespace sorvane::RTFWriter
