#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"

namespace sorvane::test {

using Rows = std::vector<std::vector<std::string>>;

inline Rows rowsOf(const TextTable& table) {
    Rows rows;
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        rows.push_back(table.row(row).texts());
    }
    return rows;
}

}  // namespace sorvane::test
