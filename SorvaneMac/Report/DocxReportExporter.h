#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

/// Word files, written by hand: all formatting is direct, without styles or settings.
namespace sorvane::DocxReportExporter {

/// The main part of the Word file.
///
/// Method     one walk over the paragraphs; a table is gathered from its cells and spans the full
///            text width; spacing is left to Word
/// Returns    well-formed XML whatever the text holds      Cost linear, about 230 bytes a table
/// cell
std::string buildDocumentXML(const RichDocument& document);

/// The Word file.
///
/// Returns    three entries: content types, relationships, document; a document with figures has
///            their relationships and one PNG each after these
std::vector<std::uint8_t> package(const RichDocument& document);

}  // namespace sorvane::DocxReportExporter
