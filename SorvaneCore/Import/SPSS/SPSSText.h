#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The texts of SPSS system files.
namespace sorvane::SPSSText {

enum class Encoding { windows1252, utf8, latin1, ascii };

/// The bytes as UTF-8.
///
/// Failure    a byte that the encoding does not define -> absent
std::optional<std::string> decoded(std::string_view bytes, Encoding encoding);

/// The bytes as UTF-8, by the declared encoding, else as UTF-8, else as Latin-1, which takes all.
std::string decodeString(std::string_view bytes, Encoding encoding);

struct ResolvedEncoding {
    Encoding encoding = Encoding::windows1252;
    /// What the user is told about it.
    std::string note;
};

/// The encoding that a file declares by name; code page 1252 without a name and for unknown ones.
ResolvedEncoding resolveEncoding(const std::optional<std::string>& name);

/// Without blanks and tabs at both ends.
std::string_view trimmedBlanks(std::string_view text);

/// Without blanks and NULs at the end.
std::string_view trimmedTrailingSpaces(std::string_view text);

}  // namespace sorvane::SPSSText
