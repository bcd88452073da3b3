#pragma once

#include "SorvaneMac/Report/ReportFiles.h"
#include "SorvaneMac/Shell/Workspace.h"

namespace sorvane {

/// The name of a format as menus and buttons show it, such as "Rich Text (.rtf)…".
QString exportLabel(ReportFormat format);

/// Asks where, and writes the report there.
void exportReport(QWidget* parent, Workspace& workspace, ReportFormat format);

}  // namespace sorvane
