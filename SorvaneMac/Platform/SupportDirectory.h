#pragma once

#include <filesystem>

namespace sorvane {

/// The folder in which the program keeps files of the user's that the user never sees, such as the
/// autosave. It need not exist yet.
std::filesystem::path supportDirectory();

}  // namespace sorvane
