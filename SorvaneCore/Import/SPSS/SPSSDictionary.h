#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/ByteReader.h"
#include "SorvaneCore/Import/SPSS/SPSSText.h"

namespace sorvane {

/// The user-missing values that a numeric variable declares.
struct MissingSpec {
    struct Range {
        double lower = 0.0;
        double upper = 0.0;
        bool operator==(const Range&) const = default;
    };
    std::vector<double> discrete;
    std::optional<Range> range;

    bool operator==(const MissingSpec&) const = default;

    /// "LOWEST through -1, 99".
    std::string displayText() const;
};

/// Header and dictionary of an SPSS system file, all that comes before the cases.
///
/// The layout of the records is told in docs/formats/spss.md. Views point into the bytes read.
struct SPSSDictionary {
    /// Bytes of a slot, in which numbers and pieces of strings stand.
    static constexpr std::size_t slotSize = 8;

    /// One slot of a case: a variable, or the continuation of a string.
    struct VariableRecord {
        std::string shortName;
        /// 0 for numbers, the width of a string, -1 for its continuation.
        std::int32_t typeCode = 0;
        int printFormatType = 0;
        int printDecimals = 0;
        std::optional<std::string_view> labelBytes;
        std::optional<MissingSpec> missing;

        bool isString() const { return typeCode != 0; }
    };
    struct ValueLabel {
        /// The 8 bytes of the value; what they mean depends on the variable.
        std::string_view raw;
        std::string_view label;
    };
    struct ValueLabelSet {
        std::vector<ValueLabel> labels;
        /// Slots counted from 0; may name slots that do not exist.
        std::vector<std::int64_t> varIndices;
    };

    std::vector<VariableRecord> variables;
    std::vector<ValueLabelSet> valueLabelSets;
    /// What is taken from a command byte to give its number.
    double bias = 0.0;
    bool compressed = false;
    bool bigEndian = false;
    /// Upper-cased short name to long name, of variables only.
    std::map<std::string, std::string> longNames;
    std::optional<std::string> encodingName;
    std::vector<std::string> notes;
    /// Where the cases begin.
    std::size_t end = 0;

    /// The dictionary of a file.
    ///
    /// Method     integers are little endian in any file; `bigEndian` is for floating numbers only
    /// Failure    no file of this kind, an unknown record, one cut short, no end, more missing
    ///            values than variables can have -> absent
    static std::optional<SPSSDictionary> read(std::string_view bytes);

    ByteOrder numberOrder() const { return bigEndian ? ByteOrder::big : ByteOrder::little; }
};

}  // namespace sorvane
