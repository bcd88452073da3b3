#include "SorvaneMac/Report/MarkdownReportExporter.h"

namespace sorvane::MarkdownReportExporter {

std::string markdown(const RichDocument& document) {
    return document.plainText();
}

}  // namespace sorvane::MarkdownReportExporter
