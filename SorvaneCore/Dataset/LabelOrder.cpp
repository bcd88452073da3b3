#include "SorvaneCore/Dataset/LabelOrder.h"

#include <algorithm>
#include <memory>
#include <numeric>
#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/stringpiece.h>

namespace sorvane::LabelOrder {

namespace {

/// Absent where the library lacks its data.
std::unique_ptr<icu::Collator> collator() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> made(
        icu::Collator::createInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status)) {
        return nullptr;
    }
    // The secondary level tells accents apart, and not yet case.
    made->setStrength(icu::Collator::SECONDARY);
    return made;
}

}  // namespace

std::vector<std::size_t> caseInsensitive(std::span<const std::string> labels) {
    const std::unique_ptr<icu::Collator> collation = collator();
    std::vector<std::size_t> order(labels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
        if (!collation) {
            return labels[a] < labels[b];
        }
        UErrorCode status = U_ZERO_ERROR;
        return collation->compareUTF8(icu::StringPiece(labels[a]), icu::StringPiece(labels[b]),
                                      status) == UCOL_LESS;
    });
    return order;
}

}  // namespace sorvane::LabelOrder
