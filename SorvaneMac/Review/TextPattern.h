#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace sorvane {

/// A regular expression over UTF-8 text, by the rules of ICU; made once, used by any thread.
class TextPattern {
public:
    explicit TextPattern(std::string_view pattern);
    ~TextPattern();
    TextPattern(TextPattern&&) noexcept;

    /// The first stretch of the text that matches; absent without one. A search that takes beyond
    /// all need, as text can be made to bring about, is given up and finds nothing.
    std::optional<std::string> firstMatch(std::string_view text) const;

private:
    struct Compiled;
    std::unique_ptr<const Compiled> compiled_;
};

}  // namespace sorvane
