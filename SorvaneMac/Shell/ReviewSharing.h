#pragma once

#include "SorvaneMac/Shell/Workspace.h"

namespace sorvane {

/// Asks where, and writes the packet of the workspace there.
void exportToIPad(QWidget* parent, Workspace& workspace);

/// Offers the packet over the network, and opens the sheet that shows it.
void presentOnIPad(QWidget* parent, Workspace& workspace);

}  // namespace sorvane
