#pragma once

#include <optional>
#include <string>
#include <string_view>

/// From the bytes of a text file to UTF-8.
namespace sorvane::TextEncoding {

/// In the order in which they are tried.
enum class Encoding {
    utf8,
    utf16,
    utf16LittleEndian,
    utf16BigEndian,
    latin1,
    windows1252,
};

/// The first encoding that takes all of the bytes.
///
/// Method     UTF-8 strictly (no surrogates, no overlong forms); UTF-16 by its byte-order mark;
///            UTF-16 of either order without a mark, when the text is plausible; then Latin-1,
///            which takes any byte, so that code page 1252 is only reached should Latin-1 refuse
/// Failure    no encoding takes the bytes: none of the above and the signature of a program, an
///            archive, a picture or another file that is no text -> absent
std::optional<Encoding> recognized(std::string_view bytes);

/// The bytes as UTF-8, a byte-order mark included.
///
/// Input      bytes that the encoding takes
/// Method     the bytes that code page 1252 leaves undefined become the controls of their number
std::string toUtf8(std::string_view bytes, Encoding encoding);

}  // namespace sorvane::TextEncoding
