#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "SorvaneCore/Import/Stata/StataFile.h"

namespace sorvane {

/// What a cell refers to: the variable and observation for which a text was stored first.
struct StataReference {
    std::uint64_t variable = 0;
    std::uint64_t observation = 0;

    bool operator==(const StataReference&) const = default;
    bool isEmpty() const { return variable == 0 && observation == 0; }
};

/// The texts of a file that stand apart from its cells, as far as they can be read.
class StataLongTexts {
public:
    explicit StataLongTexts(const StataFile& file);

    /// The number of a text, counted from 1; 0 for a reference to nothing.
    std::size_t number(const StataReference& reference) const;
    /// The bytes of the text of that number in the file.
    std::size_t size(std::size_t number) const {
        return number == 0 ? 0 : contents_[number - 1].bytes.size();
    }
    /// The text of that number; empty for 0.
    std::string text(std::size_t number) const;

private:
    struct Content {
        std::string_view bytes;
        bool isText = false;
    };
    struct Hash {
        std::size_t operator()(const StataReference& reference) const {
            return reference.observation * 0x9E3779B97F4A7C15U + reference.variable;
        }
    };
    bool readOne(ByteReader& reader, const StataFile& file);

    std::vector<Content> contents_;
    std::unordered_map<StataReference, std::size_t, Hash> numbers_;
};

}  // namespace sorvane
