#pragma once

#include <filesystem>
#include <string_view>

/// Files of a survey as statistics programs and spreadsheets write them.
namespace sorvane::StudyFiles {

/// Writes the file that a name such as "stat_1e5_byte.sav" asks for: 40 labelled items, 6 scores
/// with three decimals and 4 short texts, as a system file ("byte" compressed, "none" not) or a data
/// file ("stat_1e5.dta"); or 14 items, 4 scores and 2 texts as a workbook ("xlsx_1e4.xlsx").
///
/// Returns    whether the name is one of these
bool write(std::string_view name, const std::filesystem::path& target);

}  // namespace sorvane::StudyFiles
