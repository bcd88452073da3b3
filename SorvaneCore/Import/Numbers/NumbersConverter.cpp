#include "SorvaneCore/Import/Numbers/NumbersConverter.h"

#include <system_error>

namespace sorvane {

NumbersConverter NumbersConverter::installed() {
    std::error_code missing;
    const std::filesystem::path folder =
        std::filesystem::read_symlink("/proc/self/exe", missing).parent_path();
    const NumbersConverter beside{
        .program = folder / "sorvane-numbers",
        .script = folder.parent_path() / "share" / "sorvane" / "xlsx.full.min.js"};
    if (std::filesystem::exists(beside.program, missing) &&
        std::filesystem::exists(beside.script, missing)) {
        return beside;
    }
    return {.program = SORVANE_NUMBERS_PROGRAM, .script = SORVANE_NUMBERS_SCRIPT};
}

}  // namespace sorvane
