#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Import/ImportError.h"

namespace sorvane {

inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fputs(what, stderr);
        std::abort();
    }
}

/// Checks that an import gives a whole dataset or an error with a sentence.
template <typename Import>
void checkImport(const Import& import) {
    ImportedDataset dataset;
    try {
        dataset = import();
    } catch (const ImportError& error) {
        require(*error.what() != '\0', "an error has a sentence");
        return;
    }
    const ImportReadinessMetadata& metadata = dataset.importMetadata;
    require(dataset.headers.size() == dataset.rows.columnCount(), "a column per header");
    require(dataset.headers.size() == dataset.variables.size(), "a variable per header");
    require(metadata.rowSummaries.size() == dataset.rows.rowCount(), "a summary per row");
    std::int64_t missing = 0;
    for (std::size_t column = 0; column < dataset.headers.size(); ++column) {
        const DataVariable& variable = dataset.variables[column];
        require(variable.missingCount + variable.nonMissingCount == dataset.rowCount(),
                "cells add up");
        missing += variable.missingCount;
        require(dataset.rows.column(column).size() == dataset.rows.rowCount(), "columns are whole");
    }
    require(missing == metadata.missingCellCount, "missing cells add up");
    for (const std::string& header : dataset.headers) {
        require(UnicodeText::isValidUtf8(header), "headers are UTF-8");
    }
}

}  // namespace sorvane
