#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Import/Stata/StataFile.h"

namespace sorvane {

/// What a cell refers to: the variable and observation for which a text was stored first.
struct StataReference {
    std::uint64_t variable = 0;
    std::uint64_t observation = 0;

    auto operator<=>(const StataReference&) const = default;
    bool isEmpty() const { return variable == 0 && observation == 0; }
};

/// The texts of a file that stand apart from its cells, as far as they can be read.
class StataLongTexts {
public:
    explicit StataLongTexts(const StataFile& file);

    /// The number of a text, counted from 1; 0 for a reference to nothing.
    std::size_t number(const StataReference& reference) const;
    /// The text of that number; empty for 0.
    std::string text(std::size_t number) const;

private:
    struct Content {
        std::string_view bytes;
        bool isText = false;
    };
    struct Numbered {
        StataReference reference;
        std::size_t number = 0;

        auto operator<=>(const Numbered&) const = default;
    };
    bool readOne(ByteReader& reader, const StataFile& file);

    std::vector<Content> contents_;
    /// Ascending; of several texts for one reference the last counts.
    std::vector<Numbered> numbers_;
};

}  // namespace sorvane
