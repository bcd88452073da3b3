#pragma once

#include <QString>

namespace sorvane {

struct ThemeColors;

/// The stylesheet of the window; the application's font must stand, since lengths scale with it.
///
/// Input      iconSet: "light" or "dark", the set of small pictures to use
QString styleSheet(const ThemeColors& colors, const QString& iconSet);

}  // namespace sorvane
