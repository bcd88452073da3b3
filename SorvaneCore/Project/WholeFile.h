#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace sorvane {

/// Takes the next bytes of a file.
using TakeBytes = std::function<void(std::string_view)>;

/// Replaces a file so that a reader sees either the old or the new one whole.
///
/// Method     writes beside it, flushes to disk, renames; keeps the permissions of a file that
///            stood
/// Returns    why it failed, as the system says it; absent on success
/// Failure    the old file stays untouched and nothing is left beside it. A file that nobody may
///            write is not replaced, not even for the superuser; nor is a device or a pipe
std::optional<std::string> replaceFile(const std::filesystem::path& file,
                                       std::span<const std::uint8_t> bytes);

/// The same for bytes that `produce` makes piece by piece. What it throws is thrown on, and counts
/// as a failure.
std::optional<std::string> replaceFile(const std::filesystem::path& file,
                                       const std::function<void(const TakeBytes&)>& produce);

/// Removes what replacements that were killed left in a folder more than a day ago. Younger ones may
/// still be at work, in another window.
void removeAbandonedReplacements(const std::filesystem::path& folder);

}  // namespace sorvane
