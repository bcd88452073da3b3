#pragma once

#include <string>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane::MarkdownReportExporter {

/// The text of the Markdown file: the plain text of the document, without markup; empty for an
/// empty document.
std::string markdown(const RichDocument& document);

}  // namespace sorvane::MarkdownReportExporter
