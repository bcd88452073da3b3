#pragma once

#include <cstdint>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::PDFReportExporter {

/// The document on pages of US Letter with selectable text.
///
/// Input      a QGuiApplication must exist, for its fonts
/// Method     48 points of margin around the pages of `PrintedReport`
/// Returns    the bytes of the file; an empty document gives one empty page
std::vector<std::uint8_t> pdf(const RichDocument& document);

}  // namespace sorvane::PDFReportExporter
