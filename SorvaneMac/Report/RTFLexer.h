#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace sorvane {

enum class RTFTokenKind {
    groupStart,
    groupEnd,
    /// A control word with its number, or a control symbol such as "~" or "*".
    control,
    /// A byte given as \'hh, in `parameter`.
    hexByte,
    /// Plain bytes without line ends.
    text
};

struct RTFToken {
    RTFTokenKind kind = RTFTokenKind::text;
    /// The name of the control without its backslash, or the bytes of the text.
    std::string_view text{};
    std::optional<int> parameter{};
};

/// Cuts Rich Text into tokens; any bytes give some tokens and an end.
class RTFLexer {
public:
    /// Input  the bytes, which must outlive the tokens
    explicit RTFLexer(std::string_view rtf) : rtf_(rtf) {}

    /// Returns  the next token; absent at the end
    std::optional<RTFToken> next();

private:
    RTFToken control();
    RTFToken hexByte();
    std::optional<int> parameter();

    std::string_view rtf_;
    std::size_t at_ = 0;
};

/// The bytes that pairs of hexadecimal digits spell; other characters, such as line ends, are
/// passed over.
std::vector<std::uint8_t> bytesOfHex(std::string_view text);

}  // namespace sorvane
