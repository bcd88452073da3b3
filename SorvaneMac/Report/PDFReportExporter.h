#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::PDFReportExporter {

/// The document on pages of US Letter with selectable text.
///
/// Input      a QGuiApplication must exist, for its fonts
/// Method     48 points of margin, a text area of 516 by 696 points; a heading stays with what
///            follows it and a table that fits a page is not broken; the heads of a longer one
///            repeat
/// Returns    the bytes of the file; an empty document gives one empty page
std::vector<std::uint8_t> pdf(const RichDocument& document);

}  // namespace sorvane::PDFReportExporter
