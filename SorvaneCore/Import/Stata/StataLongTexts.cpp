#include "SorvaneCore/Import/Stata/StataLongTexts.h"

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
    texts_[{.variable = *variable, .observation = observation}] = {.bytes = *content,
                                                                   .isText = type == textType};
    return true;
}

std::string StataLongTexts::text(const StataReference& reference) const {
    const auto found = reference.isEmpty() ? texts_.end() : texts_.find(reference);
    if (found == texts_.end()) {
        return {};
    }
    const Content& content = found->second;
    return content.isText ? StataFile::text(content.bytes) : UnicodeText::repaired(content.bytes);
}

}  // namespace sorvane
