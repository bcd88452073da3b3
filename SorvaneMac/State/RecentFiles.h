#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/State/UserDefaults.h"

/// Lists of files used last, newest first, kept as paths under a key of the user's defaults.
namespace sorvane::RecentFiles {

/// Puts the file first; a former entry of it, and what is more than 8, is dropped.
///
/// Returns    the list as it is kept now
std::vector<std::string> remember(UserDefaults& defaults,
                                  std::string_view key,
                                  const std::filesystem::path& file);
/// Those of the list where a file exists now.
std::vector<std::filesystem::path> existing(const UserDefaults& defaults, std::string_view key);

}  // namespace sorvane::RecentFiles
