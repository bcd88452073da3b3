#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Import/BytesOf.h"

namespace sorvane {

/// An SPSS system file in the making: records one after the other, then the cases.
class SystemFileBuilder {
public:
    explicit SystemFileBuilder(bool compressed = false, double bias = 100.0) {
        bytes_ = "$FL2@(#) " + std::string(55, ' ') + int32(2) + int32(-1) +
                 int32(compressed ? 1 : 0) + int32(0) + int32(-1) + bytesOf(bias) +
                 std::string(84, ' ');
    }

    struct Variable {
        std::string name;
        std::int32_t width = 0;
        std::int32_t formatType = 5;
        std::int32_t decimals = 2;
        std::string label = {};
        std::int32_t missingCount = 0;
        std::vector<double> missing = {};
    };
    SystemFileBuilder& variable(const Variable& variable) {
        const std::int32_t format = variable.formatType << 16 | 8 << 8 | variable.decimals;
        add(int32(2) + int32(variable.width) + int32(variable.label.empty() ? 0 : 1) +
            int32(variable.missingCount) + int32(format) + int32(format) +
            filled(variable.name, 8));
        if (!variable.label.empty()) {
            const auto size = static_cast<std::int32_t>(variable.label.size());
            add(int32(size) + filled(variable.label, (variable.label.size() + 3) / 4 * 4));
        }
        for (const double value : variable.missing) {
            add(bytesOf(value));
        }
        return *this;
    }
    /// The further slots of a string.
    SystemFileBuilder& continuation() { return variable({.name = "", .width = -1}); }

    struct Label {
        std::string raw;
        std::string text;
    };
    SystemFileBuilder& labels(const std::vector<Label>& labels,
                              const std::vector<std::int32_t>& variables) {
        add(int32(3) + int32(static_cast<std::int32_t>(labels.size())));
        for (const Label& label : labels) {
            const std::size_t size = (label.text.size() + 8) / 8 * 8 - 1;
            add(filled(label.raw, 8) + static_cast<char>(label.text.size()) +
                filled(label.text, size));
        }
        add(int32(4) + int32(static_cast<std::int32_t>(variables.size())));
        for (const std::int32_t variable : variables) {
            add(int32(variable));
        }
        return *this;
    }
    SystemFileBuilder& extension(std::int32_t subtype, const std::string& payload) {
        return add(int32(7) + int32(subtype) + int32(1) +
                   int32(static_cast<std::int32_t>(payload.size())) + payload);
    }
    SystemFileBuilder& add(const std::string& bytes) {
        bytes_ += bytes;
        return *this;
    }

    /// The file with these cases.
    std::string with(const std::string& data) const {
        return bytes_ + int32(999) + int32(0) + data;
    }

    static std::string int32(std::int32_t value) { return bytesOf(value); }
    static std::string filled(std::string text, std::size_t size) {
        text.resize(size, ' ');
        return text;
    }

private:
    std::string bytes_;
};

}  // namespace sorvane
