#pragma once

#include <string_view>

#include <QString>

#include "SorvaneMac/Report/ReportItem.h"

namespace sorvane {

/// Puts a table on the clipboard as HTML and as text.
///
/// Input      title: empty for none
void copyTable(std::string_view title, const ReportTable& table);

/// The table as lines of text.
QString plainText(const ReportTable& table);

}  // namespace sorvane
