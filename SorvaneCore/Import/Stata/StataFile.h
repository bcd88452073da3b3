#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/ByteReader.h"

namespace sorvane {

/// How the cells of long texts refer to them.
enum class StataStringReferences {
    /// In 8 bytes (2 and 6) in release 117, in 12 (4 and 8) from 118 on.
    stated,
    /// In 8 bytes: 4 and 4 in release 117, 2 and 6 in 118, 3 and 5 in 119.
    eightBytes,
};

/// What a Stata data file says about itself and its variables; the cells are read elsewhere.
///
/// The layout is told in docs/formats/stata.md.
struct StataFile {
    struct VarType {
        enum class Kind { str, byte, int_, long_, float_, double_, strL };
        Kind kind = Kind::str;
        /// In bytes, of `str` only.
        std::size_t width = 0;
    };

    std::string_view bytes;
    std::int64_t release = 0;
    ByteOrder byteOrder = ByteOrder::little;
    std::size_t variableCount = 0;
    std::uint64_t observationCount = 0;
    std::string datasetLabel;
    std::string timestamp;
    /// Section to where it begins.
    std::map<std::string_view, std::uint64_t> map;
    std::vector<VarType> types;
    std::vector<std::string> variableNames;

    /// The release that a file declares.
    ///
    /// Failure    no tagged data file, no number -> absent
    static std::optional<std::int64_t> peekRelease(std::string_view bytes);
    static bool isSupported(std::int64_t release) { return release >= 117 && release <= 119; }

    /// Header, map, types and names.
    ///
    /// Input      bytes of a supported release
    /// Failure    any of them malformed or short -> absent
    static std::optional<StataFile> read(std::string_view bytes);

    /// By variable name; as far as they can be read.
    std::map<std::string, std::string> variableLabels() const;
    /// The name of the table of value labels of each variable, as far as they can be read.
    std::vector<std::string> valueLabelNames() const;
    // The sizes of fields that grew with release 118, when texts became UTF-8.
    std::int64_t nameSize() const { return release == 117 ? 33 : 129; }
    std::int64_t labelSize() const { return release == 117 ? 81 : 321; }

    /// A reader behind the opening tag of a section; absent where the section is not.
    std::optional<ByteReader> section(std::string_view name) const;
    /// The bytes of a text that ends at the first NUL as UTF-8, without blanks at both ends.
    static std::string text(std::string_view field);
};

}  // namespace sorvane
