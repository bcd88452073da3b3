#pragma once

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

/// Writes cells and ends rows; holds back little.
class CsvWriter {
public:
    explicit CsvWriter(const std::filesystem::path& file) : stream_(file, std::ios::binary) {}

    void cell(std::string_view text) {
        if (!atRowStart_) {
            stream_ << ',';
        }
        atRowStart_ = false;
        stream_ << text;
    }
    void quotedCell(std::string_view text) {
        std::string quoted = "\"";
        for (const char c : text) {
            quoted += c == '"' ? "\"\"" : std::string(1, c);
        }
        cell(quoted + '"');
    }
    void endRow() {
        stream_ << '\n';
        atRowStart_ = true;
    }
    void numberedHeaders(std::string_view stem, std::size_t count) {
        for (std::size_t i = 1; i <= count; ++i) {
            cell(std::string(stem) + std::to_string(i));
        }
    }

private:
    std::ofstream stream_;
    bool atRowStart_ = true;
};

constexpr double sixDecimals = 1e6;

/// The text of a number to as many decimals as `scale` has zeros.
inline std::string rounded(double value, double scale) {
    return NumberText::shortest(std::round(value * scale) / scale);
}

}  // namespace sorvane
