#pragma once

#include <string_view>

/// The names that the export panels propose.
namespace sorvane::ReportFileName {

inline constexpr std::string_view markdown = "Sorvane-Report.md";
inline constexpr std::string_view rtf = "Sorvane-Report.rtf";
inline constexpr std::string_view docx = "Sorvane-Report.docx";
inline constexpr std::string_view pdf = "Sorvane-Report.pdf";
inline constexpr std::string_view draftExtension = "briselreport";

}  // namespace sorvane::ReportFileName
