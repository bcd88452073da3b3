#include <cstddef>
#include <cstdint>

#include "Fuzz/ImportedDatasetCheck.h"
#include "SorvaneCore/Import/StatPackageImporter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const auto references :
         {sorvane::StataStringReferences::stated, sorvane::StataStringReferences::eightBytes}) {
        const sorvane::StatPackageImporter importer{.stataReferences = references};
        sorvane::checkImport([&] { return importer.importStata("fuzz", bytes); });
    }
    return 0;
}
