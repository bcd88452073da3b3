#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "SorvaneCore/Project/ProjectArchive.h"

/// A project file may hold anything: it is refused with a sentence, or it is a project that reads
/// back when it is written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using sorvane::ProjectArchive;
    std::string written;
    try {
        written = ProjectArchive::encode(
            ProjectArchive::decode({reinterpret_cast<const char*>(data), size}));
    } catch (const sorvane::ProjectArchiveError&) {
        return 0;
    }
    if (ProjectArchive::encode(ProjectArchive::decode(written)) != written) {
        std::fputs("a project reads back", stderr);
        std::abort();
    }
    return 0;
}
