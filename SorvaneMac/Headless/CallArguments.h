#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Analyses/Basics/NamedNumericGroup.h"
#include "SorvaneCore/Dataset/ImportedDataset.h"
#include "SorvaneCore/Project/RecordJson.h"

namespace sorvane {

/// Arguments that a procedure cannot take; the text is one line that says which.
class CallError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What procedures read: names, texts with the codes of their levels, columns of numbers, a matrix
/// by rows.
using NameList = std::vector<std::string>;
using CodedColumn = std::shared_ptr<const TextColumn>;
using ColumnList = std::vector<NumericColumn>;
using NumberRows = std::vector<std::vector<double>>;

/// The arguments of one call: a JSON object, and the table whose columns it may name.
///
/// Two keys restrict the table's rows before anything is read: "firstRows" (a count) and "rows" (a
/// list of row numbers counted from 1, or "all"). Every key must be asked for by the procedure;
/// `expectNoOthers` refuses the rest, so that a misspelt setting is not silently left at its
/// default.
class CallArguments {
public:
    /// Throws CallError when the arguments are no object or name rows that are not there.
    CallArguments(Json arguments, std::optional<ImportedDataset> dataset);

    bool has(const std::string& name) const;
    /// Whether something other than null stands there; the procedure has then asked for it.
    bool isGiven(const std::string& name) const;
    /// Whether it is a list whose first entry is a list: a matrix by rows, not by column names.
    bool hasRows(const std::string& name) const;

    /// A column of numbers: the name of a column of the table, or a list of cells.
    NumericColumn numericColumn(const std::string& name) const;
    /// A column of texts, likewise.
    std::vector<std::string> textColumn(const std::string& name) const;
    /// The same with the codes of its levels.
    CodedColumn codedColumn(const std::string& name) const;
    /// A list of such columns; where it is not given, `namesKey` names columns of the table.
    std::vector<CodedColumn> codedColumns(const std::string& name,
                                          const std::string& namesKey) const;
    /// The label of a group: a text, or a number as a cell would spell it.
    std::string label(const std::string& name, const std::string& fallback) const;
    /// Named groups of numbers: a list of groups with `name` and `values`, or an object that names
    /// the `column` of values and the column `by` which they are grouped. Where it is not given,
    /// "outcome" and "group" name these two. Groups of rows stand by label, and those of fewer
    /// than two values are left out.
    std::vector<NamedNumericGroup> namedGroups(const std::string& name) const;
    /// A list of columns; where it is not given, `namesKey` names columns of the table.
    ColumnList numericColumns(const std::string& name, const std::string& namesKey) const;
    /// A matrix by columns: a list of rows of cells, or as `numericColumns` of column names.
    ColumnList matrixColumns(const std::string& name, const std::string& namesKey) const;
    /// Under which of its two names the one column of a procedure was given.
    std::string onlyColumnName() const;
    /// A list of names; where it is not given, the names of the columns of `columnsKey`.
    std::vector<std::string> columnNames(const std::string& name,
                                         const std::string& columnsKey) const;
    /// The names of the columns of a matrix: one for each of them, or none at all, which names them
    /// as `columnNames` does.
    std::vector<std::string> matrixNames(const std::string& name,
                                         const std::string& matrixKey) const;

    /// A name; where it is not given, that of the column of `columnKey`, empty for a list of cells.
    std::string columnName(const std::string& name, const std::string& columnKey) const;
    /// The start of a sequence of random numbers: a whole number, or a text of hexadecimal digits
    /// after "0x".
    std::uint64_t seed(const std::string& name, std::uint64_t fallback) const;
    /// All columns of the table, and their names; none where there is no table.
    ColumnList tableColumns() const;
    std::vector<std::string> tableColumnNames() const;
    /// The text of a cell, which may be given as a number.
    std::string cell(const std::string& name) const;

    /// A setting that must be given.
    template <typename T>
    T required(const std::string& name) const {
        const Json* given = find(name);
        if (!given) {
            throw CallError("The argument \"" + name + "\" is missing.");
        }
        return read<T>(name, *given);
    }
    /// A setting that may be left out.
    template <typename T>
    T setting(const std::string& name, T fallback) const {
        const Json* given = find(name);
        return given ? read<T>(name, *given) : fallback;
    }
    /// Every described field of a struct of settings, those not given at their defaults.
    template <typename Settings>
    Settings settings() const {
        Settings settings;
        boost::mp11::mp_for_each<record_json::Members<Settings>>([&](auto member) {
            auto& field = settings.*member.pointer;
            if (const Json* given = find(member.name)) {
                field = read<std::decay_t<decltype(field)>>(member.name, *given);
            }
        });
        return settings;
    }

    /// Throws CallError when an argument was given that nobody asked for.
    void expectNoOthers() const;

private:
    template <typename T>
    static T read(const std::string& name, const Json& json) {
        try {
            return fromJson<T>(json);
        } catch (const RecordJsonError& error) {
            throw CallError("The argument \"" + name + "\" " + error.what() + ".");
        }
    }

    const Json* find(const std::string& name) const;
    const Json& given(const std::string& name) const;
    /// The list of columns of `name`, or of `namesKey` where that is not given.
    const Json& givenColumns(const std::string& name, const std::string& namesKey) const;
    NumericColumn numericColumnOf(const std::string& name, const Json& json) const;
    CodedColumn codedColumnOf(const std::string& name, const Json& json) const;
    NamedNumericGroup groupOf(const std::string& name, const Json& json) const;
    std::size_t columnIndex(const std::string& name, const std::string& column) const;

    std::shared_ptr<const Json> arguments_;
    std::optional<ImportedDataset> dataset_;
    mutable std::set<std::string> askedFor_;
};

}  // namespace sorvane
