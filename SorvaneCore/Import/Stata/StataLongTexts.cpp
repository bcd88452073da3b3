#include "SorvaneCore/Import/Stata/StataLongTexts.h"

#include <algorithm>
#include <iterator>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane {

namespace {

/// Contents of this type end at their first NUL; others are taken whole.
constexpr std::uint8_t textType = 130;

}  // namespace

StataLongTexts::StataLongTexts(const StataFile& file) {
    std::optional<ByteReader> reader = file.section("strls");
    while (reader && reader->skipPast("GSO") && readOne(*reader, file)) {
    }
    std::ranges::sort(numbers_);
}

bool StataLongTexts::readOne(ByteReader& reader, const StataFile& file) {
    const auto variable = reader.read<std::uint32_t>(file.byteOrder);
    const bool isNarrow = file.release == 117;
    const auto narrow = isNarrow ? reader.read<std::uint32_t>(file.byteOrder) : std::nullopt;
    const auto wide = isNarrow ? std::nullopt : reader.read<std::uint64_t>(file.byteOrder);
    const auto type = reader.read<std::uint8_t>();
    const auto length = reader.read<std::uint32_t>(file.byteOrder);
    const auto content = length ? reader.readBytes(*length) : std::nullopt;
    if (!variable || !content) {
        return false;
    }
    const std::uint64_t observation = narrow ? *narrow : wide.value_or(0);
    contents_.push_back({.bytes = *content, .isText = type == textType});
    numbers_.push_back({.reference = {.variable = *variable, .observation = observation},
                        .number = contents_.size()});
    return true;
}

std::size_t StataLongTexts::number(const StataReference& reference) const {
    const auto behind = std::ranges::upper_bound(numbers_, reference, {}, &Numbered::reference);
    const bool isFound = !reference.isEmpty() && behind != numbers_.begin() &&
                         std::prev(behind)->reference == reference;
    return isFound ? std::prev(behind)->number : 0;
}

std::string StataLongTexts::text(std::size_t number) const {
    if (number == 0) {
        return {};
    }
    const Content& content = contents_[number - 1];
    return content.isText ? StataFile::text(content.bytes) : UnicodeText::repaired(content.bytes);
}

}  // namespace sorvane
