#include "SorvaneMac/Review/PairHandshake.h"

#include <gtest/gtest.h>

namespace sorvane {
namespace {

using Verdict = PairHandshake::Verdict;

/// The verdict on bytes that come in pieces of one size.
Verdict verdictOn(const std::string& text,
                  std::size_t piece,
                  const std::optional<std::string>& code) {
    PairHandshake handshake;
    Verdict verdict = Verdict::waiting;
    for (std::size_t at = 0; at < text.size(); at += piece) {
        const std::string part = text.substr(at, piece);
        verdict =
            handshake.take({reinterpret_cast<const std::uint8_t*>(part.data()), part.size()}, code);
    }
    return verdict;
}

TEST(PairHandshake, AcceptsTheCodeAloneHoweverItComes) {
    const struct {
        int line;
        std::string sent;
        std::optional<std::string> code;
        Verdict expected;
    } cases[] = {
        {__LINE__, "PAIR0427", "0427", Verdict::accepted},
        {__LINE__, "PAIR0427\r\nmore", "0427", Verdict::accepted},
        {__LINE__, "PAIR042", "0427", Verdict::waiting},
        {__LINE__, "PAIR0428", "0427", Verdict::refused},
        {__LINE__, "pair0427", "0427", Verdict::refused},
        {__LINE__, "PAIR 427", "0427", Verdict::refused},
        {__LINE__, std::string("PAIR0427").replace(4, 1, 1, '\0'), "0427", Verdict::refused},
        {__LINE__, "PAIR0000", std::nullopt, Verdict::refused},
        {__LINE__, "PAIR0000", "", Verdict::refused},
        {__LINE__, "GET / HTTP/1.1\r\n", "0427", Verdict::refused},
        {__LINE__, "xxxxxxxxPAIR0427", "0427", Verdict::refused},
    };
    for (const auto& each : cases) {
        for (const std::size_t piece : {1, 3, 8, 100}) {
            EXPECT_EQ(verdictOn(each.sent, piece, each.code), each.expected)
                << "line " << each.line << ", pieces of " << piece;
        }
    }
}

TEST(ReviewWire, WritesCodesAndLengthsInTheirForm) {
    EXPECT_EQ(ReviewWire::pairCode(0), "0000");
    EXPECT_EQ(ReviewWire::pairCode(42), "0042");
    EXPECT_EQ(ReviewWire::pairCode(9999), "9999");
    EXPECT_EQ(ReviewWire::lengthPrefix(0x01020304),
              (std::array<std::uint8_t, 4>{0x01, 0x02, 0x03, 0x04}));
    EXPECT_TRUE(ReviewWire::lengthPrefix(0xFFFFFFFF));
    EXPECT_FALSE(ReviewWire::lengthPrefix(0x100000000));
}

}  // namespace
}  // namespace sorvane
