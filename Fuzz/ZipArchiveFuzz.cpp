#include <cstddef>
#include <cstdint>

#include "Fuzz/ImportedDatasetCheck.h"
#include "SorvaneCore/Import/Archive/ZipArchiveReader.h"
#include "SorvaneCore/Import/Archive/ZipError.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    using namespace sorvane;
    try {
        const UnpackedFolder folder = ZipArchiveReader::extract(bytes);
        for (const ZipArchiveReader::Entry& entry :
             ZipArchiveReader::centralDirectoryEntries(bytes)) {
            require(ZipArchiveReader::entryData(bytes, entry.name).has_value(), "an entry reads");
            const auto path = standardizedPath(entry.name);
            require(entry.name.ends_with('/') || (path && folder.file(*path) != nullptr),
                    "an entry is unpacked");
        }
    } catch (const ZipError& error) {
        require(*error.what() != '\0', "an error has a sentence");
    }
    return 0;
}
