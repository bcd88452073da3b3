#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "SorvaneMac/Drafting/ChatStream.h"
#include "SorvaneMac/Drafting/NumbersInText.h"
#include "SorvaneMac/Drafting/SanitizedText.h"

namespace {

void expect(bool holds, const char* claim) {
    if (!holds) {
        std::fputs(claim, stderr);
        std::abort();
    }
}

sorvane::ChatStream read(std::string_view bytes, std::size_t piece) {
    sorvane::ChatStream stream;
    for (std::size_t at = 0; at < bytes.size(); at += piece) {
        stream.take(bytes.substr(at, piece));
    }
    stream.finish();
    return stream;
}

}  // namespace

/// A server's answer is whatever comes: it is read without harm and the same however it is cut, and
/// its text stays clean once it was cleaned.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const sorvane::ChatStream whole = read(bytes, size + 1);
    const sorvane::ChatStream cut = read(bytes, 3);
    expect(whole.text() == cut.text() && whole.failure() == cut.failure() &&
               whole.isDone() == cut.isDone(),
           "an answer reads the same however it is cut");
    const std::string clean = sorvane::SanitizedText::sanitized(whole.text());
    expect(sorvane::SanitizedText::sanitized(clean) == clean, "clean text stays clean");
    expect(sorvane::NumbersInText::foreign(clean, whole.text()).empty(),
           "cleaning adds no numbers");
    sorvane::SanitizedText::sanitizedSoFar(bytes);
    sorvane::NumbersInText::foreign(bytes, "1,200 and .5");
    return 0;
}
