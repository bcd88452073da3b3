#include "SorvaneCore/Import/SPSS/SPSSDictionary.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <set>
#include <utility>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/SPSS/SPSSNumbers.h"

namespace sorvane {

namespace {

using SPSSText::trimmedBlanks;

constexpr std::string_view magic = "$FL2";
constexpr std::size_t headerSize = 176;
constexpr std::size_t compressionOffset = 72;
constexpr std::size_t biasOffset = 84;

enum RecordType : std::int32_t {
    variableRecord = 2,
    valueLabelRecord = 3,
    valueLabelVariablesRecord = 4,
    documentRecord = 6,
    extensionRecord = 7,
    endRecord = 999,
};

enum ExtensionSubtype : std::int32_t {
    machineInformation = 3,
    longNamesSubtype = 13,
    veryLongStringsSubtype = 14,
    characterEncoding = 20,
};

constexpr std::int64_t documentLineSize = 80;
/// Programs write three a variable at the most; each is told to the user.
constexpr std::size_t mostMissingValues = 1'000'000;

/// `count` with the bytes that fill it up to a multiple of `unit`.
std::int64_t roundedUp(std::int64_t count, std::int64_t unit) {
    return (count + unit - 1) / unit * unit;
}

/// Two parts around the first "=", trimmed; absent when either is empty.
struct Pair {
    std::string key;
    std::string value;
};
std::optional<Pair> splitPair(std::string_view piece) {
    // Empty parts do not count, so that leading equals signs are skipped.
    piece.remove_prefix(std::min(piece.find_first_not_of('='), piece.size()));
    const std::size_t sign = piece.find('=');
    if (sign == piece.npos || sign + 1 == piece.size()) {
        return std::nullopt;
    }
    return Pair{.key = UnicodeText::upperCased(trimmedBlanks(piece.substr(0, sign))),
                .value = std::string(trimmedBlanks(piece.substr(sign + 1)))};
}

/// Calls `take` with each pair of a record of names; they are not gathered, as a record can hold
/// any number.
template <typename Take>
void forEachPair(std::string_view text, char separator, const Take& take) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (std::optional<Pair> pair = splitPair(text.substr(0, end))) {
            take(*std::move(pair));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool isInteger(std::string_view text) {
    std::int64_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

class DictionaryParser {
public:
    DictionaryParser(std::string_view bytes, SPSSDictionary& dictionary)
        : reader_(bytes, headerSize), dictionary_(dictionary) {}

    bool parse() {
        while (const std::optional<std::int32_t> type = reader_.read<std::int32_t>()) {
            if (*type == endRecord) {
                const bool hasFiller = reader_.readBytes(4).has_value();
                dictionary_.end = reader_.position();
                applyLongNames();
                return hasFiller;
            }
            if (!parseRecord(*type)) {
                return false;
            }
        }
        return false;
    }

private:
    bool parseRecord(std::int32_t type) {
        switch (type) {
            case variableRecord:
                return parseVariable();
            case valueLabelRecord:
                return parseValueLabels();
            case documentRecord:
                return parseDocument();
            case extensionRecord:
                return parseExtension();
            default:
                return false;
        }
    }

    bool parseVariable() {
        std::array<std::int32_t, 5> fields = {};
        for (std::int32_t& field : fields) {
            const std::optional<std::int32_t> read = reader_.read<std::int32_t>();
            if (!read) {
                return false;
            }
            field = *read;
        }
        const auto [typeCode, hasLabel, missingCount, printFormat, writeFormat] = fields;
        const std::optional<std::string_view> name = reader_.readBytes(SPSSDictionary::slotSize);
        if (!name) {
            return false;
        }
        SPSSDictionary::VariableRecord record{.typeCode = typeCode,
                                              .printFormatType = printFormat >> 16,
                                              .printDecimals = printFormat & 0xFF};
        const std::string shortName =
            SPSSText::decoded(*name, SPSSText::Encoding::windows1252).value_or("");
        record.shortName = trimmedBlanks(shortName);
        if ((hasLabel == 1 && !parseLabel(record)) || !parseMissing(missingCount, record)) {
            return false;
        }
        dictionary_.variables.push_back(std::move(record));
        return true;
    }

    bool parseLabel(SPSSDictionary::VariableRecord& record) {
        const std::optional<std::int32_t> length = reader_.read<std::int32_t>();
        const auto bytes = length ? reader_.readBytes(*length) : std::nullopt;
        record.labelBytes = bytes;
        return bytes && reader_.readBytes(roundedUp(*length, 4) - *length);
    }

    bool parseMissing(std::int64_t count, SPSSDictionary::VariableRecord& record) {
        const auto bytes =
            reader_.readBytes(std::abs(count) * std::int64_t{SPSSDictionary::slotSize});
        if (!bytes) {
            return false;
        }
        if (!record.isString() && count != 0) {
            missingValues_ += bytes->size() / SPSSDictionary::slotSize;
            record.missing = count > -2 ? discreteValues(*bytes) : rangeOfValues(*bytes, count);
        }
        return missingValues_ <= mostMissingValues;
    }

    double valueAt(std::string_view bytes, std::size_t index) const {
        return ByteReader::number<double>(bytes.data() + index * SPSSDictionary::slotSize,
                                          dictionary_.numberOrder());
    }

    std::optional<MissingSpec> discreteValues(std::string_view bytes) const {
        MissingSpec spec;
        for (std::size_t i = 0; i < bytes.size() / SPSSDictionary::slotSize; ++i) {
            if (const double value = valueAt(bytes, i); std::isfinite(value)) {
                spec.discrete.push_back(value);
            }
        }
        return spec.discrete.empty() ? std::nullopt : std::optional(std::move(spec));
    }

    std::optional<MissingSpec> rangeOfValues(std::string_view bytes, std::int64_t count) {
        MissingSpec spec;
        const double first = valueAt(bytes, 0);
        const double second = valueAt(bytes, 1);
        const bool lacksAnEnd = std::isnan(first) != std::isnan(second);
        if (lacksAnEnd && !std::exchange(toldOfRanges_, true)) {
            dictionary_.notes.emplace_back(
                "Ignored ranges of user-missing values that lack one of their ends.");
        }
        if (!lacksAnEnd && (std::isfinite(first) || std::isfinite(second))) {
            spec.range = {.lower = std::fmin(first, second), .upper = std::fmax(first, second)};
        }
        if (count == -3 && std::isfinite(valueAt(bytes, 2))) {
            spec.discrete.push_back(valueAt(bytes, 2));
        }
        return spec.range || !spec.discrete.empty() ? std::optional(std::move(spec)) : std::nullopt;
    }

    bool parseValueLabels() {
        SPSSDictionary::ValueLabelSet set;
        const std::optional<std::int32_t> count = reader_.read<std::int32_t>();
        if (!count || *count < 0) {
            return false;
        }
        const std::size_t mostLabels = reader_.remaining() / (2 * SPSSDictionary::slotSize);
        set.labels.reserve(std::min(static_cast<std::size_t>(*count), mostLabels));
        for (std::int32_t i = 0; i < *count; ++i) {
            const auto raw = reader_.readBytes(SPSSDictionary::slotSize);
            const auto length = reader_.read<std::uint8_t>();
            const auto label = length ? reader_.readBytes(*length) : std::nullopt;
            if (!raw || !label ||
                !reader_.readBytes(roundedUp(*length + 1, SPSSDictionary::slotSize) -
                                   (*length + 1))) {
                return false;
            }
            set.labels.push_back({.raw = *raw, .label = *label});
        }
        if (!parseLabelledVariables(set)) {
            return false;
        }
        dictionary_.valueLabelSets.push_back(std::move(set));
        return true;
    }

    bool parseLabelledVariables(SPSSDictionary::ValueLabelSet& set) {
        const std::optional<std::int32_t> type = reader_.read<std::int32_t>();
        const std::optional<std::int32_t> count = reader_.read<std::int32_t>();
        if (type != valueLabelVariablesRecord || !count) {
            return false;
        }
        const auto indexes =
            *count < 0 ? std::nullopt : reader_.readBytes(std::int64_t{*count} * 4);
        if (!indexes) {
            return false;
        }
        set.varIndices.reserve(indexes->size() / 4);
        for (std::size_t at = 0; at < indexes->size(); at += 4) {
            set.varIndices.push_back(
                std::int64_t{ByteReader::number<std::int32_t>(indexes->data() + at)} - 1);
        }
        return true;
    }

    bool parseDocument() {
        const std::optional<std::int32_t> lines = reader_.read<std::int32_t>();
        return lines && reader_.readBytes(*lines * documentLineSize);
    }

    bool parseExtension() {
        const std::optional<std::int32_t> subtype = reader_.read<std::int32_t>();
        const std::optional<std::int32_t> size = reader_.read<std::int32_t>();
        const std::optional<std::int32_t> count = reader_.read<std::int32_t>();
        if (!subtype || !size || !count) {
            return false;
        }
        const auto payload = reader_.readBytes(std::int64_t{*size} * std::int64_t{*count});
        if (!payload) {
            return false;
        }
        switch (*subtype) {
            case machineInformation:
                readMachineInformation(*payload);
                break;
            case longNamesSubtype:
                readLongNames(*payload);
                break;
            case veryLongStringsSubtype:
                readVeryLongStrings(*payload);
                break;
            case characterEncoding:
                readEncodingName(*payload);
                break;
            default:
                break;
        }
        return true;
    }

    void readMachineInformation(std::string_view payload) {
        constexpr std::size_t byteOrderOffset = 24;
        if (payload.size() < 32) {
            return;
        }
        dictionary_.bigEndian =
            ByteReader::number<std::int32_t>(payload.data() + byteOrderOffset) == 1;
        if (dictionary_.bigEndian) {
            dictionary_.notes.emplace_back("Big-endian system file detected.");
        }
    }

    /// The records of names may come before the file tells its encoding; they are read as code page
    /// 1252 whatever it is, and otherwise only where a byte is none of that.
    static std::string decodedNames(std::string_view payload) {
        return SPSSText::decodeString(payload, SPSSText::Encoding::windows1252);
    }

    void readLongNames(std::string_view payload) {
        longNameRecords_.push_back(payload);
        forEachPair(decodedNames(payload), '\t', [this](const Pair&) { hasLongNames_ = true; });
        if (hasLongNames_) {
            dictionary_.notes.emplace_back("Applied long variable names (subtype 13).");
        }
    }

    void applyLongNames() {
        std::set<std::string> shortNames;
        for (std::size_t i = 0; hasLongNames_ && i < dictionary_.variables.size(); ++i) {
            shortNames.insert(UnicodeText::upperCased(dictionary_.variables[i].shortName));
        }
        for (const std::string_view payload : longNameRecords_) {
            forEachPair(decodedNames(payload), '\t', [this, &shortNames](Pair pair) {
                if (shortNames.contains(pair.key)) {
                    dictionary_.longNames[std::move(pair.key)] = std::move(pair.value);
                }
            });
        }
    }

    void readVeryLongStrings(std::string_view payload) {
        forEachPair(decodedNames(payload), '\0', [this](const Pair& pair) {
            hasVeryLongStrings_ = hasVeryLongStrings_ || isInteger(pair.value);
        });
        if (hasVeryLongStrings_) {
            dictionary_.notes.emplace_back("Detected very-long-string variables (subtype 14).");
        }
    }

    void readEncodingName(std::string_view payload) {
        if (UnicodeText::isAscii(payload)) {
            dictionary_.encodingName = UnicodeText::trimmed(payload);
        }
    }

    ByteReader reader_;
    SPSSDictionary& dictionary_;
    std::vector<std::string_view> longNameRecords_;
    bool hasLongNames_ = false;
    bool hasVeryLongStrings_ = false;
    std::size_t missingValues_ = 0;
    bool toldOfRanges_ = false;
};

}  // namespace

std::string MissingSpec::displayText() const {
    std::string text;
    if (range) {
        text = SPSSNumbers::missingText(range->lower) + " through " +
               SPSSNumbers::missingText(range->upper);
    }
    for (const double value : discrete) {
        text += (text.empty() ? "" : ", ") + SPSSNumbers::missingText(value);
    }
    return text;
}

std::optional<SPSSDictionary> SPSSDictionary::read(std::string_view bytes) {
    if (bytes.size() < headerSize || !bytes.starts_with(magic)) {
        return std::nullopt;
    }
    SPSSDictionary dictionary;
    dictionary.compressed = ByteReader::number<std::int32_t>(bytes.data() + compressionOffset) != 0;
    dictionary.bias = ByteReader::number<double>(bytes.data() + biasOffset);
    return DictionaryParser(bytes, dictionary).parse() ? std::optional(std::move(dictionary))
                                                       : std::nullopt;
}

}  // namespace sorvane
