#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The small archives of field-study packages.
namespace sorvane::ZipStore {

/// The unpacked bytes of the entry of that name.
///
/// Method     the local headers are walked from the front; an archive that was written as a stream,
///            so that they lack the sizes, is read by its central directory
/// Failure    no such entry, or one that cannot be unpacked -> absent
std::optional<std::string> extract(std::string_view bytes, std::string_view name);

/// What a DEFLATE stream without a header of its own unpacks to; absent unless of that size.
std::optional<std::string> inflate(std::string_view bytes, std::uint64_t expectedSize);

}  // namespace sorvane::ZipStore
