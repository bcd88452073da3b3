#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/Archive/UnpackedFolder.h"

/// Reads ZIP archives held in memory: central directory, stored and deflated entries. Checksums are
/// not compared.
namespace sorvane::ZipArchiveReader {

/// One record of the central directory.
struct Entry {
    /// UTF-8; malformed bytes replaced.
    std::string name;
    std::uint16_t method = 0;
    std::int64_t compressedSize = 0;
    std::int64_t uncompressedSize = 0;
    std::int64_t localHeaderOffset = 0;

    bool operator==(const Entry&) const = default;
};

/// The records of the central directory, in its order.
///
/// Method     the end record is looked for backwards from the end, behind a comment of any length;
///            the last one found so counts
/// Failure    no end record -> notAZipFile; a malformed record -> corruptArchive; markers of ZIP64
///            -> unsupported
std::vector<Entry> centralDirectoryEntries(std::string_view bytes);

/// How much an archive of so many bytes may unpack to: far more is a bomb and no table.
std::uint64_t mostUnpackedBytes(std::size_t archiveSize);

/// The unpacked bytes of the entry with exactly this name; absent without one.
///
/// Failure    ZipError
std::optional<std::string> entryData(std::string_view bytes, std::string_view name);

/// All files of an archive, as they would stand in a folder of their own.
///
/// Method     entries in the directory's order, a later one of the same path in the place of the
///            earlier; nothing is written anywhere
/// Failure    the archive would unpack to more than 256 MiB and 128 times its size, or its entries
///            overlap to come near to it; the first entry that cannot be unpacked or whose name
///            leads out of the folder -> ZipError
UnpackedFolder extract(std::string_view bytes);

}  // namespace sorvane::ZipArchiveReader
