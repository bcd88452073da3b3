#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Import/BytesOf.h"

namespace sorvane {

/// An entry of an archive in the making; sizes can lie.
struct ZipEntry {
    std::string name;
    std::string bytes;
    std::uint16_t method = 0;
    std::uint32_t declaredSize = 0;
};

/// An archive of these entries, as they stand, with a comment behind.
inline std::string zipArchive(const std::vector<ZipEntry>& entries,
                              const std::string& comment = {}) {
    std::string archive;
    std::string directory;
    for (const ZipEntry& entry : entries) {
        const auto packed = static_cast<std::uint32_t>(entry.bytes.size());
        const std::uint32_t size = entry.method == 0 ? packed : entry.declaredSize;
        const auto nameSize = static_cast<std::uint16_t>(entry.name.size());
        const std::string common = bytesOf<std::uint16_t>(entry.method) +
                                   bytesOf<std::uint64_t>(0) + bytesOf(packed) + bytesOf(size) +
                                   bytesOf(nameSize) + bytesOf<std::uint16_t>(0);
        directory += "PK\1\2" + bytesOf<std::uint16_t>(20) + bytesOf<std::uint32_t>(20) + common +
                     std::string(10, '\0') + bytesOf(static_cast<std::uint32_t>(archive.size())) +
                     entry.name;
        archive += "PK\3\4" + bytesOf<std::uint32_t>(20) + common + entry.name + entry.bytes;
    }
    const auto count = static_cast<std::uint16_t>(entries.size());
    const auto offset = static_cast<std::uint32_t>(archive.size());
    return archive + directory + "PK\5\6" + bytesOf<std::uint32_t>(0) + bytesOf(count) +
           bytesOf(count) + bytesOf(static_cast<std::uint32_t>(directory.size())) +
           bytesOf(offset) + bytesOf(static_cast<std::uint16_t>(comment.size())) + comment;
}

}  // namespace sorvane
