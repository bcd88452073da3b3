#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace sorvane {

/// What a client sends before it gets the packet: "PAIR" and the four digits of the code.
class PairHandshake {
public:
    static constexpr std::size_t length = 8;

    enum class Verdict { waiting, accepted, refused };

    /// Takes the next bytes that came, however they are cut; what goes beyond the handshake is
    /// passed over.
    ///
    /// Input      the code as it is shown; absent while none is valid, which refuses
    /// Returns    a verdict once all 8 bytes are there; it stands
    /// Method     every byte is compared whatever those before it were, so that the time tells
    ///            nothing of how much of a wrong code was right
    Verdict take(std::span<const std::uint8_t> bytes, const std::optional<std::string>& pairCode);

    std::size_t missing() const { return length - count_; }

private:
    Verdict judge(const std::optional<std::string>& pairCode) const;

    std::array<std::uint8_t, length> bytes_{};
    std::size_t count_ = 0;
    Verdict verdict_ = Verdict::waiting;
};

/// The numbers of the wire.
namespace ReviewWire {

inline constexpr std::uint16_t port = 9847;
inline constexpr std::uint32_t pairCodes = 10000;

/// A number below `pairCodes` as its four digits.
std::string pairCode(std::uint32_t number);

/// The length that goes before a packet, big-endian.
///
/// Failure    more than 32 bits hold -> absent
std::optional<std::array<std::uint8_t, 4>> lengthPrefix(std::uint64_t payloadSize);

}  // namespace ReviewWire

}  // namespace sorvane
