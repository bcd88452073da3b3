#pragma once

#include <boost/describe/enum.hpp>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane {

/// The kinds of file that a report leaves the program as; named as their file extensions, the draft
/// aside.
enum class ReportFormat { md, rtf, docx, pdf, draft };
BOOST_DESCRIBE_ENUM(ReportFormat, md, rtf, docx, pdf, draft)

/// The extension without its point; a draft's is "briselreport".
std::string_view rawValue(ReportFormat format);

/// The format of an extension; absent for any other text.
std::optional<ReportFormat> reportFormat(std::string_view extension);

/// The file name that the export panel proposes, such as "Sorvane-Report.docx".
std::string suggestedFileName(ReportFormat format);

/// What the file holds. A draft keeps the editor's rich text as RTF.
std::vector<std::uint8_t> reportBytes(const RichDocument& document, ReportFormat format);

/// Writes the report to a file, in place of one that stands there.
///
/// Failure    the sentence that the user reads; absent when the file stands
std::optional<std::string> writeReport(const RichDocument& document,
                                       ReportFormat format,
                                       const std::filesystem::path& file);

}  // namespace sorvane
