#pragma once

#include <filesystem>

namespace sorvane {

/// The directory of the files that come with the program.
///
/// Method     the environment variable SORVANE_RESOURCES, else ../share/sorvane beside the
///            executable, else the source tree from which the program was built
/// Returns    the first of them that exists; the last where none does
std::filesystem::path resourceDirectory();

}  // namespace sorvane
