#include "SorvaneMac/Platform/ResourceDirectory.h"

#include <cstdlib>
#include <system_error>

namespace sorvane {

namespace {

std::filesystem::path besideExecutable() {
    std::error_code unreadable;
    const std::filesystem::path executable =
        std::filesystem::read_symlink("/proc/self/exe", unreadable);
    return executable.parent_path().parent_path() / "share" / "sorvane";
}

}  // namespace

std::filesystem::path resourceDirectory() {
    std::error_code unreadable;
    if (const char* chosen = std::getenv("SORVANE_RESOURCES");
        chosen && std::filesystem::is_directory(chosen, unreadable)) {
        return chosen;
    }
    std::filesystem::path installed = besideExecutable();
    if (std::filesystem::is_directory(installed, unreadable)) {
        return installed;
    }
    return SORVANE_SOURCE_RESOURCES;
}

}  // namespace sorvane
