#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "SorvaneCore/Dataset/ValueLabels.h"
#include "SorvaneCore/Import/Stata/StataFile.h"
#include "SorvaneCore/Import/ValueLabelBudget.h"

namespace sorvane {

/// The tables of value labels of a Stata data file, as far as they can be read whole. They stay in
/// the file's bytes until a variable needs one.
class StataValueLabels {
public:
    explicit StataValueLabels(const StataFile& file);

    bool hasTable(const std::string& name) const { return tables_.contains(name); }
    /// Value to label.
    ///
    /// Input      the name of a table
    /// Failure    the budget does not last for all of them, and none is taken of it -> absent
    std::optional<PricedLabels> labels(const std::string& name, ValueLabelBudget& budget) const;

private:
    struct Table {
        std::string_view offsets;
        std::string_view values;
        std::string_view texts;
    };
    static std::optional<Table> readTable(ByteReader& reader, ByteOrder order);

    ByteOrder order_;
    std::map<std::string, Table> tables_;
};

}  // namespace sorvane
