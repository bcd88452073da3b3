#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace sorvane {

/// Finds where a JSON string, list or object ends whose bytes come in pieces.
class JsonValueEnd {
public:
    /// Looks at the next bytes, the first ones from the value's own first on; says how many of them
    /// belong to the value.
    std::size_t find(std::string_view bytes);

    bool isFound() const { return isFound_; }
    /// No project nests this deeply; what reads the value need not be able to.
    bool isTooDeep() const { return depth_ > deepest; }

    static constexpr int deepest = 64;

private:
    void meet(char special);

    int depth_ = 0;
    bool inString_ = false;
    bool isEscaped_ = false;
    bool isFound_ = false;
};

}  // namespace sorvane
