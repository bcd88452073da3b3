#pragma once

namespace sorvane {

/// Whether the desktop asks for dark windows.
///
/// Method     the lightness of the window colour that the platform gives, for which the program's
///            own palette is taken back; the caller sets it again
bool systemPrefersDark();

}  // namespace sorvane
