#include "SorvaneMac/Review/TextPattern.h"

#include <cassert>
#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace sorvane {

namespace {

/// In units of ICU, each about a millisecond of matching and the same on every machine.
constexpr int32_t mostEffort = 200;

icu::UnicodeString unicode(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

}  // namespace

struct TextPattern::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

TextPattern::TextPattern(std::string_view pattern) {
    UErrorCode status = U_ZERO_ERROR;
    auto compiled = std::make_unique<Compiled>();
    compiled->pattern.reset(icu::RegexPattern::compile(unicode(pattern), 0, status));
    assert(U_SUCCESS(status));
    compiled_ = std::move(compiled);
}

TextPattern::~TextPattern() = default;
TextPattern::TextPattern(TextPattern&&) noexcept = default;

std::optional<std::string> TextPattern::firstMatch(std::string_view text) const {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString subject = unicode(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(compiled_->pattern->matcher(subject, status));
    matcher->setTimeLimit(mostEffort, status);
    if (!matcher->find(status) || U_FAILURE(status)) {
        return std::nullopt;
    }
    std::string found;
    matcher->group(status).toUTF8String(found);
    return found;
}

}  // namespace sorvane
