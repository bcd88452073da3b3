#pragma once

#include <initializer_list>
#include <string_view>

#include "SorvaneMac/State/VariableLists.h"

/// Lists of variables that suit one kind of selection, each in column order.
namespace sorvane::SuitedVariables {

using VariableLists::List;

/// Those of the list whose name has one of the words as a word of its own, whatever its case.
List named(const List& list, std::initializer_list<std::string_view> words);
/// Numbers with exactly two distinct values.
List twoValued(const List& numeric);
/// Between two and eight distinct values: items with answer categories.
List withFewCategories(const List& list);
/// Every variable that is not set aside, of whatever role.
List analyzed(const ImportedDataset& dataset);
/// What can say which cluster a case belongs to: grouping factors, identifiers and other variables
/// that are neither items nor outcomes and repeat a value, and texts that stand twice or more on
/// average.
List clusters(const ImportedDataset& dataset);

}  // namespace sorvane::SuitedVariables
