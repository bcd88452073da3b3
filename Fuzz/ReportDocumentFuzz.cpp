#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "SorvaneMac/Report/RichDocument.h"

/// A stored document is whatever a project file holds: it is read without harm, and once read it
/// survives being stored and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto first = sorvane::decode(std::span(data, size));
    if (!first) {
        return 0;
    }
    const auto second = sorvane::decode(sorvane::encode(*first));
    if (!second || second->plainText() != first->plainText()) {
        std::fputs("a stored document reads back", stderr);
        std::abort();
    }
    return 0;
}
