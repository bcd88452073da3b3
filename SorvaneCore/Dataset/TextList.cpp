#include "SorvaneCore/Dataset/TextList.h"

namespace sorvane {

void TextList::append(const TextList& other, std::size_t first) {
    if (first >= other.size()) {
        return;
    }
    const std::uint64_t skipped = first == 0 ? 0 : other.end(first - 1);
    const std::uint64_t before = bytes_.size();
    bytes_.insert(bytes_.end(), other.bytes_.begin() + static_cast<std::ptrdiff_t>(skipped),
                  other.bytes_.end());
    ends_.reserve(ends_.size() + other.size() - first);
    for (std::size_t index = first; index < other.size(); ++index) {
        appendEnd(before + other.end(index) - skipped);
    }
}

void TextList::reserve(std::size_t texts, std::size_t bytes) {
    ends_.reserve(texts);
    bytes_.reserve(bytes);
}

}  // namespace sorvane
