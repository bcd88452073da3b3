#include "SorvaneCore/Import/Stata/StataFile.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

constexpr std::array<std::string_view, 14> mapKeys = {"stata_data_open",
                                                      "map",
                                                      "variable_types",
                                                      "varnames",
                                                      "sortlist",
                                                      "formats",
                                                      "value_label_names",
                                                      "variable_labels",
                                                      "characteristics",
                                                      "data",
                                                      "strls",
                                                      "value_labels",
                                                      "stata_data_close",
                                                      "eof"};

constexpr std::uint16_t byteCode = 65530;
constexpr std::uint16_t intCode = 65529;
constexpr std::uint16_t longCode = 65528;
constexpr std::uint16_t floatCode = 65527;
constexpr std::uint16_t doubleCode = 65526;
constexpr std::uint16_t strLCode = 32768;

std::optional<std::string> readTagText(ByteReader& reader, std::string_view tag) {
    const std::string name(tag);
    if (!reader.skipPast("<" + name + ">")) {
        return std::nullopt;
    }
    const std::size_t size = reader.rest().find("</" + name + ">");
    if (size == std::string_view::npos) {
        return std::nullopt;
    }
    const auto text = reader.readBytes(static_cast<std::int64_t>(size));
    reader.skipPast("</" + name + ">");
    return text ? std::optional(UnicodeText::repaired(*text)) : std::nullopt;
}

std::optional<std::int64_t> integer(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int64_t number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::optional<std::int64_t> readRelease(ByteReader& reader) {
    if (!reader.skipPast("<stata_dta>") || !reader.skipPast("<header>")) {
        return std::nullopt;
    }
    const std::optional<std::string> text = readTagText(reader, "release");
    return text ? integer(*text) : std::nullopt;
}

/// Reads what comes before the data.
class HeaderParser {
public:
    explicit HeaderParser(StataFile& file) : file_(file), reader_(file.bytes) {}

    bool parse() {
        return parseReleaseAndOrder() && parseCounts() && parseTexts() &&
               reader_.skipPast("</header>") && parseMap() && parseTypes() && parseNames();
    }

private:
    template <typename Number>
    std::optional<std::uint64_t> readNumber() {
        const std::optional<Number> number = reader_.read<Number>(file_.byteOrder);
        return number ? std::optional<std::uint64_t>(*number) : std::nullopt;
    }

    bool parseReleaseAndOrder() {
        const std::optional<std::int64_t> release = readRelease(reader_);
        const auto order = release ? readTagText(reader_, "byteorder") : std::nullopt;
        file_.release = release.value_or(0);
        file_.byteOrder = order == "MSF" ? ByteOrder::big : ByteOrder::little;
        return order && StataFile::isSupported(file_.release);
    }

    bool parseCounts() {
        if (!reader_.skipPast("<K>")) {
            return false;
        }
        const auto variables =
            file_.release == 119 ? readNumber<std::uint32_t>() : readNumber<std::uint16_t>();
        if (!variables || !reader_.skipPast("</K>") || !reader_.skipPast("<N>")) {
            return false;
        }
        const auto observations =
            file_.release == 117 ? readNumber<std::uint32_t>() : readNumber<std::uint64_t>();
        file_.variableCount = *variables;
        file_.observationCount = observations.value_or(0);
        return observations && reader_.skipPast("</N>");
    }

    bool parseTexts() {
        if (!reader_.skipPast("<label>")) {
            return false;
        }
        const auto length =
            file_.release == 117 ? readNumber<std::uint8_t>() : readNumber<std::uint16_t>();
        return parseText(length, file_.datasetLabel) && reader_.skipPast("</label>") &&
               reader_.skipPast("<timestamp>") &&
               parseText(readNumber<std::uint8_t>(), file_.timestamp) &&
               reader_.skipPast("</timestamp>");
    }

    bool parseText(std::optional<std::uint64_t> length, std::string& text) {
        const auto bytes =
            length ? reader_.readBytes(static_cast<std::int64_t>(*length)) : std::nullopt;
        text = UnicodeText::repaired(bytes.value_or(std::string_view()));
        return bytes.has_value();
    }

    bool parseMap() {
        if (!reader_.skipPast("<map>")) {
            return false;
        }
        for (const std::string_view key : mapKeys) {
            const auto offset = readNumber<std::uint64_t>();
            if (!offset) {
                return false;
            }
            file_.map[key] = *offset;
        }
        return reader_.skipPast("</map>");
    }

    bool parseTypes() {
        std::optional<ByteReader> section = file_.section("variable_types");
        const auto codes =
            section ? section->readBytes(static_cast<std::int64_t>(file_.variableCount) * 2)
                    : std::nullopt;
        if (!codes) {
            return false;
        }
        file_.types.reserve(file_.variableCount);
        for (std::size_t at = 0; at < codes->size(); at += 2) {
            file_.types.push_back(
                varType(ByteReader::number<std::uint16_t>(codes->data() + at, file_.byteOrder)));
        }
        return true;
    }

    static StataFile::VarType varType(std::uint16_t code) {
        using Type = StataFile::VarType::Kind;
        switch (code) {
            case byteCode:
                return {.kind = Type::byte};
            case intCode:
                return {.kind = Type::int_};
            case longCode:
                return {.kind = Type::long_};
            case floatCode:
                return {.kind = Type::float_};
            case doubleCode:
                return {.kind = Type::double_};
            case strLCode:
                return {.kind = Type::strL};
            default:
                return {.kind = Type::str, .width = code};
        }
    }

    bool parseNames() {
        std::optional<ByteReader> section = file_.section("varnames");

        for (std::size_t i = 0; section && i < file_.variableCount; ++i) {
            const auto field = section->readBytes(file_.nameSize());
            if (!field) {
                return false;
            }
            file_.variableNames.push_back(StataFile::text(*field));
        }
        return section.has_value();
    }

    StataFile& file_;
    ByteReader reader_;
};

}  // namespace

std::optional<std::int64_t> StataFile::peekRelease(std::string_view bytes) {
    ByteReader reader(bytes);
    return readRelease(reader);
}

std::optional<StataFile> StataFile::read(std::string_view bytes) {
    StataFile file;
    file.bytes = bytes;
    return HeaderParser(file).parse() ? std::optional(std::move(file)) : std::nullopt;
}

std::optional<ByteReader> StataFile::section(std::string_view name) const {
    const auto offset = map.find(name);
    if (offset == map.end() || offset->second > bytes.size()) {
        return std::nullopt;
    }
    ByteReader reader(bytes, static_cast<std::size_t>(offset->second));
    return reader.skipPast("<" + std::string(name) + ">") ? std::optional(reader) : std::nullopt;
}

std::map<std::string, std::string> StataFile::variableLabels() const {
    std::map<std::string, std::string> labels;
    std::optional<ByteReader> reader = section("variable_labels");
    for (std::size_t i = 0; reader && i < variableCount; ++i) {
        const auto field = reader->readBytes(labelSize());
        if (!field) {
            break;
        }
        if (std::string label = text(*field); !label.empty()) {
            labels[variableNames[i]] = std::move(label);
        }
    }
    return labels;
}

std::vector<std::string> StataFile::valueLabelNames() const {
    std::vector<std::string> names;
    std::optional<ByteReader> reader = section("value_label_names");
    for (std::size_t i = 0; reader && i < variableCount; ++i) {
        const auto field = reader->readBytes(nameSize());
        if (!field) {
            break;
        }
        names.push_back(text(*field));
    }
    return names;
}

std::string StataFile::text(std::string_view field) {
    std::string_view cut = field.substr(0, field.find('\0'));
    constexpr std::string_view blanks = " \t";
    cut.remove_prefix(std::min(cut.find_first_not_of(blanks), cut.size()));
    return UnicodeText::repaired(cut.substr(0, cut.find_last_not_of(blanks) + 1));
}

}  // namespace sorvane
