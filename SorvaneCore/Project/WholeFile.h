#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

namespace sorvane {

/// Replaces a file so that a reader sees either the old or the new one whole.
///
/// Method     writes beside it, flushes to disk, renames; keeps the permissions of a file that
///            stood
/// Returns    why it failed, as the system says it; absent on success
/// Failure    the old file stays untouched and nothing is left beside it
std::optional<std::string> replaceFile(const std::filesystem::path& file,
                                       std::span<const std::uint8_t> bytes);

}  // namespace sorvane
