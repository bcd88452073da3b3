#include <cstddef>
#include <cstdint>

#include "Fuzz/ImportedDatasetCheck.h"
#include "SorvaneCore/Import/StatPackageImporter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    sorvane::checkImport(
        [bytes] { return sorvane::StatPackageImporter().importSPSS("fuzz", bytes); });
    return 0;
}
