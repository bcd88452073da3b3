#pragma once

#include <cstddef>
#include <string>

#include "SorvaneCore/Dataset/ImportedDataset.h"

/// Columns added to a table, rewritten in place, renamed or removed. The variables and the counts
/// of the import record follow; what the record says of the source stays.
namespace sorvane::DerivedColumns {

/// Appends a column and its variable.
///
/// Input      `name` free in the table; values of any length, cut or padded with empty cells
/// Method     the variable is classified, then gets the role given, which also decides whether it
///            is described; it belongs to no scale, and `warning` is its only one
/// Cost       O(rows)
void append(ImportedDataset& dataset,
            const std::string& name,
            const TextTable::Column& values,
            VariableKind assignedType,
            const std::string& warning);

/// Replaces the cells of a column.
///
/// Method     the variable is classified anew; it keeps its id, label, construct, role and
///            inclusions, and `warning` is its only one
void replace(ImportedDataset& dataset,
             std::size_t column,
             const TextTable::Column& values,
             const std::string& warning);

/// Input      `name` free in the table
void rename(ImportedDataset& dataset, std::size_t column, const std::string& name);

void remove(ImportedDataset& dataset, std::size_t column);

/// Counts the cells of the import record anew.
void refreshCounts(ImportedDataset& dataset);

}  // namespace sorvane::DerivedColumns
