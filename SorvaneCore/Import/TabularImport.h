#pragma once

#include <boost/describe/class.hpp>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/TextTable.h"
#include "SorvaneCore/Dataset/ValueLabels.h"

namespace sorvane {

/// The table that a reader of a statistics package's file hands over.
struct TabularImport {
    /// As the file gives them, before headers are made unique.
    std::vector<std::string> variableNames;
    /// By variable name.
    std::map<std::string, std::string> variableLabels;
    /// Variable name to raw value to label.
    std::map<std::string, ValueLabels> valueLabels;
    /// Variable name to a text that tells its declared user-missing values.
    std::map<std::string, std::string> userMissingSpecs;
    /// Cells already formatted as text.
    TextTable rows;
    /// What the reader has to tell the user.
    std::vector<std::string> notes;
    /// Indexes of columns with a number that no data hold.
    std::vector<std::size_t> implausibleColumns;
    /// Indexes of columns that references of another width than read may have shifted.
    std::vector<std::size_t> shiftedColumns;

    bool operator==(const TabularImport&) const = default;
};
BOOST_DESCRIBE_STRUCT(TabularImport,
                      (),
                      (variableNames,
                       variableLabels,
                       valueLabels,
                       userMissingSpecs,
                       rows,
                       notes,
                       implausibleColumns,
                       shiftedColumns))

}  // namespace sorvane
