#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "SorvaneMac/Review/PairHandshake.h"

namespace {

using sorvane::PairHandshake;
using Verdict = PairHandshake::Verdict;

void expect(bool holds, const char* claim) {
    if (!holds) {
        std::fputs(claim, stderr);
        std::abort();
    }
}

}  // namespace

/// The first four bytes are the code, the fifth is the size of pieces, the rest is what a client
/// sends: it is let in by its first eight bytes alone, however they are cut.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t head = 5;
    if (size < head) {
        return 0;
    }
    const std::string code(reinterpret_cast<const char*>(data), 4);
    const std::size_t piece = std::size_t{1} + data[4] % 16U;
    const std::span<const std::uint8_t> sent(data + head, size - head);
    PairHandshake handshake;
    Verdict verdict = Verdict::waiting;
    for (std::size_t at = 0; at < sent.size(); at += piece) {
        const Verdict former = verdict;
        verdict = handshake.take(sent.subspan(at, std::min(piece, sent.size() - at)), code);
        expect(former == Verdict::waiting || verdict == former, "a verdict stands");
    }
    const std::string right = "PAIR" + code;
    const bool isWhole = sent.size() >= PairHandshake::length;
    const bool isRight = isWhole && std::equal(right.begin(), right.end(), sent.begin(),
                                               [](char wanted, std::uint8_t came) {
                                                   return static_cast<std::uint8_t>(wanted) == came;
                                               });
    expect(verdict == (!isWhole  ? Verdict::waiting
                       : isRight ? Verdict::accepted
                                 : Verdict::refused),
           "the first eight bytes decide");
    return 0;
}
