#pragma once

#include <cstddef>
#include <string>

namespace sorvane {

/// How much memory the value labels of all variables may take. A file holds a label once, and any
/// number of variables can name it.
class ValueLabelBudget {
public:
    /// For a file of so many bytes.
    explicit ValueLabelBudget(std::size_t fileBytes) : left_(floor + fileBytes) {}

    /// Takes what a label needs.
    ///
    /// Returns    false when there is not so much left; what was taken stays taken
    bool take(std::size_t textBytes) {
        const std::size_t wanted = bytesPerLabel + textBytes;
        const bool fits = wanted <= left_;
        left_ -= fits ? wanted : left_;
        return fits;
    }

private:
    /// Some 700,000 labels, whatever the size of the file.
    static constexpr std::size_t floor = std::size_t{96} << 20;
    /// Of a map's entry of two texts.
    static constexpr std::size_t bytesPerLabel = 128;

    std::size_t left_;
};

/// What the user is told when the budget did not last.
inline std::string tooManyLabelsNote() {
    return "Value labels of further variables were left out, as there are too many.";
}

}  // namespace sorvane
