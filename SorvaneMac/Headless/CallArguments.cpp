#include "SorvaneMac/Headless/CallArguments.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <numeric>

#include "SorvaneCore/Analyses/Basics/GroupedRows.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr const char* firstRowsKey = "firstRows";
constexpr const char* rowsKey = "rows";

CodedColumn picked(const TextColumn& column, const std::vector<std::size_t>& rows) {
    std::vector<std::string> cells;
    cells.reserve(rows.size());
    for (const std::size_t row : rows) {
        cells.emplace_back(column[row]);
    }
    return TextColumn::of(cells);
}

TextTable pickedRows(const TextTable& table, const std::vector<std::size_t>& rows) {
    std::vector<TextTable::Column> columns;
    for (std::size_t i = 0; i < table.columnCount(); ++i) {
        columns.push_back(picked(table.column(i), rows));
    }
    return {std::move(columns), rows.size()};
}

std::string cellText(const std::string& name, const Json& json) {
    if (json.is_null()) {
        return {};
    }
    if (json.is_string()) {
        return json.get<std::string>();
    }
    if (json.is_number()) {
        return NumberText::shortest(json.get<double>());
    }
    throw CallError("The argument \"" + name + "\" needs cells that are numbers, texts or null.");
}

std::string positionName(std::size_t position) {
    return "Column " + NumberText::integer(static_cast<std::int64_t>(position));
}

/// Whether "rows" gives the numbers of rows to keep rather than the rows of a procedure, or "all".
bool restrictsRows(const Json& rows) {
    return rows != "all" && !(rows.is_array() && !rows.empty() &&
                              (rows.front().is_array() || rows.front().is_string()));
}

std::optional<double> numberOf(const std::string& name, const Json& cell) {
    return cell.is_number() ? cell.get<double>() : numericCell(cellText(name, cell));
}

}  // namespace

CallArguments::CallArguments(Json arguments, std::optional<ImportedDataset> dataset)
    : arguments_(std::make_shared<const Json>(std::move(arguments))), dataset_(std::move(dataset)) {
    if (!arguments_->is_object()) {
        throw CallError("The arguments must be one JSON object.");
    }
    if (!dataset_) {
        return;
    }
    const auto rowCount = static_cast<std::size_t>(dataset_->rowCount());
    if (has(firstRowsKey)) {
        std::vector<std::size_t> rows(
            std::min<std::size_t>(required<std::size_t>(firstRowsKey), rowCount));
        std::iota(rows.begin(), rows.end(), std::size_t{0});
        dataset_->rows = pickedRows(dataset_->rows, rows);
    } else if (has(rowsKey) && restrictsRows((*arguments_)[rowsKey])) {
        auto rows = required<std::vector<std::size_t>>(rowsKey);
        for (std::size_t& row : rows) {
            if (row < 1 || row > rowCount) {
                throw CallError("The argument \"rows\" names a row that is not there.");
            }
            --row;
        }
        dataset_->rows = pickedRows(dataset_->rows, rows);
    }
}

bool CallArguments::has(const std::string& name) const {
    return arguments_->contains(name);
}

bool CallArguments::isGiven(const std::string& name) const {
    const Json* json = find(name);
    return json && !json->is_null();
}

bool CallArguments::hasRows(const std::string& name) const {
    const auto entry = arguments_->find(name);
    return entry != arguments_->end() && entry->is_array() && !entry->empty() &&
           entry->front().is_array();
}

const Json* CallArguments::find(const std::string& name) const {
    askedFor_.insert(name);
    const auto entry = arguments_->find(name);
    return entry == arguments_->end() ? nullptr : &*entry;
}

const Json& CallArguments::given(const std::string& name) const {
    const Json* json = find(name);
    if (!json) {
        throw CallError("The argument \"" + name + "\" is missing.");
    }
    return *json;
}

std::size_t CallArguments::columnIndex(const std::string& name, const std::string& column) const {
    if (!dataset_) {
        throw CallError("The argument \"" + name + "\" names the column \"" + column +
                        "\"; give the file that holds it with --data.");
    }
    const std::optional<std::size_t> index = dataset_->columnIndex(column);
    if (!index) {
        throw CallError("The argument \"" + name + "\" names the column \"" + column +
                        "\", which is not in the file.");
    }
    return *index;
}

NumericColumn CallArguments::numericColumnOf(const std::string& name, const Json& json) const {
    if (json.is_string()) {
        const std::size_t index = columnIndex(name, json.get<std::string>());
        return NumericColumn(dataset_->rows.sharedColumn(index));
    }
    if (!json.is_array()) {
        throw CallError("The argument \"" + name + "\" needs a column name or a list of cells.");
    }
    std::vector<std::optional<double>> rows;
    rows.reserve(json.size());
    for (const Json& cell : json) {
        rows.push_back(numberOf(name, cell));
    }
    return NumericColumn(std::move(rows));
}

NumericColumn CallArguments::numericColumn(const std::string& name) const {
    return numericColumnOf(name, given(name));
}

CodedColumn CallArguments::codedColumnOf(const std::string& name, const Json& json) const {
    if (json.is_string()) {
        return dataset_->rows.sharedColumn(columnIndex(name, json.get<std::string>()));
    }
    if (!json.is_array()) {
        throw CallError("The argument \"" + name + "\" needs a column name or a list of cells.");
    }
    std::vector<std::string> cells;
    cells.reserve(json.size());
    for (const Json& cell : json) {
        cells.push_back(cellText(name, cell));
    }
    return TextColumn::of(cells);
}

CodedColumn CallArguments::codedColumn(const std::string& name) const {
    return codedColumnOf(name, given(name));
}

std::vector<std::string> CallArguments::textColumn(const std::string& name) const {
    const CodedColumn column = codedColumn(name);
    std::vector<std::string> cells;
    cells.reserve(column->size());
    for (std::size_t row = 0; row < column->size(); ++row) {
        cells.emplace_back((*column)[row]);
    }
    return cells;
}

std::string CallArguments::label(const std::string& name, const std::string& fallback) const {
    const Json* json = find(name);
    return json ? cellText(name, *json) : fallback;
}

NamedNumericGroup CallArguments::groupOf(const std::string& name, const Json& json) const {
    if (!json.is_object() || !json.contains("name") || !json.contains("values")) {
        throw CallError("The argument \"" + name + "\" needs groups with a name and values.");
    }
    return {.name = cellText(name, json["name"]),
            .values = numericColumnOf(name, json["values"]).present()};
}

std::vector<NamedNumericGroup> CallArguments::namedGroups(const std::string& name) const {
    constexpr std::size_t fewestValues = 2;
    const Json* json = find(name);
    if (json && json->is_array()) {
        std::vector<NamedNumericGroup> groups;
        for (const Json& group : *json) {
            groups.push_back(groupOf(name, group));
        }
        return groups;
    }
    if (json && !(json->is_object() && json->contains("column") && json->contains("by"))) {
        throw CallError("The argument \"" + name +
                        "\" needs a list of groups, or the names of a column and the column by "
                        "which it is grouped.");
    }
    if (!json && !has("outcome")) {
        given(name);
    }
    const Json& outcome = json ? (*json)["column"] : given("outcome");
    const Json& group = json ? (*json)["by"] : given("group");
    GroupedRows rows = GroupedRows::of(*codedColumnOf(name, group), numericColumnOf(name, outcome));
    rows.sortByLabel();
    return rows.takeGroups(fewestValues);
}

const Json& CallArguments::givenColumns(const std::string& name,
                                        const std::string& namesKey) const {
    const Json* json = find(name);
    const Json* names = json ? json : find(namesKey);
    const Json& columns = names ? *names : given(name);
    if (!columns.is_array()) {
        throw CallError("The argument \"" + (json ? name : namesKey) +
                        "\" needs a list of columns.");
    }
    return columns;
}

std::vector<CodedColumn> CallArguments::codedColumns(const std::string& name,
                                                     const std::string& namesKey) const {
    std::vector<CodedColumn> result;
    for (const Json& column : givenColumns(name, namesKey)) {
        result.push_back(codedColumnOf(has(name) ? name : namesKey, column));
    }
    return result;
}

ColumnList CallArguments::numericColumns(const std::string& name,
                                         const std::string& namesKey) const {
    ColumnList result;
    for (const Json& column : givenColumns(name, namesKey)) {
        result.push_back(numericColumnOf(has(name) ? name : namesKey, column));
    }
    return result;
}

ColumnList CallArguments::matrixColumns(const std::string& name,
                                        const std::string& namesKey) const {
    if (!hasRows(name)) {
        return numericColumns(name, namesKey);
    }
    const Json& json = given(name);
    std::vector<std::vector<std::optional<double>>> columns(json.front().size());
    for (const Json& row : json) {
        if (!row.is_array() || row.size() != columns.size()) {
            throw CallError("The argument \"" + name + "\" needs rows of one length.");
        }
        for (std::size_t i = 0; i < columns.size(); ++i) {
            columns[i].push_back(numberOf(name, row[i]));
        }
    }
    return {columns.begin(), columns.end()};
}

std::string CallArguments::onlyColumnName() const {
    return has("values") && !has("column") ? "values" : "column";
}

std::vector<std::string> CallArguments::columnNames(const std::string& name,
                                                    const std::string& columnsKey) const {
    if (find(name)) {
        return required<std::vector<std::string>>(name);
    }
    const Json& columns = given(columnsKey);
    std::vector<std::string> names;
    for (const Json& column : columns) {
        names.push_back(column.is_string() ? column.get<std::string>()
                                           : positionName(names.size() + 1));
    }
    return names;
}

std::vector<std::string> CallArguments::matrixNames(const std::string& name,
                                                    const std::string& matrixKey) const {
    const auto given = setting<std::vector<std::string>>(name, {});
    const Json* matrix = find(matrixKey);
    if (!matrix || matrix->empty()) {
        return given;
    }
    const std::size_t count = hasRows(matrixKey) ? matrix->front().size() : matrix->size();
    if (!given.empty() && given.size() != count) {
        throw CallError("The argument \"" + name + "\" needs a name for each of the " +
                        NumberText::integer(static_cast<std::int64_t>(count)) + " columns of \"" +
                        matrixKey + "\".");
    }
    if (!given.empty()) {
        return given;
    }
    std::vector<std::string> names;
    while (names.size() < count) {
        const std::size_t at = names.size();
        const bool isNamed = !hasRows(matrixKey) && (*matrix)[at].is_string();
        names.push_back(isNamed ? (*matrix)[at].get<std::string>() : positionName(at + 1));
    }
    return names;
}

std::string CallArguments::columnName(const std::string& name, const std::string& columnKey) const {
    if (find(name)) {
        return required<std::string>(name);
    }
    const Json& column = given(columnKey);
    return column.is_string() ? column.get<std::string>() : std::string();
}

std::uint64_t CallArguments::seed(const std::string& name, std::uint64_t fallback) const {
    constexpr int hexadecimal = 16;
    const Json* json = find(name);
    if (!json) {
        return fallback;
    }
    if (json->is_number_unsigned()) {
        return json->get<std::uint64_t>();
    }
    const std::string text = json->is_string() ? json->get<std::string>() : "";
    std::uint64_t number = 0;
    const bool isPrefixed = text.starts_with("0x") || text.starts_with("0X");
    const char* end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + (isPrefixed ? 2 : 0), end, number,
                                      isPrefixed ? hexadecimal : 10);
    if (read.ec != std::errc() || read.ptr != end) {
        throw CallError("The argument \"" + name +
                        "\" needs a whole number, or a text such as \"0x1f\".");
    }
    return number;
}

ColumnList CallArguments::tableColumns() const {
    ColumnList columns;
    for (std::size_t i = 0; dataset_ && i < dataset_->rows.columnCount(); ++i) {
        columns.emplace_back(dataset_->rows.sharedColumn(i));
    }
    return columns;
}

std::vector<std::string> CallArguments::tableColumnNames() const {
    return dataset_ ? dataset_->headers : std::vector<std::string>();
}

std::string CallArguments::cell(const std::string& name) const {
    return cellText(name, given(name));
}

void CallArguments::expectNoOthers() const {
    for (const auto& [name, value] : arguments_->items()) {
        if (name != firstRowsKey && name != rowsKey && !askedFor_.contains(name)) {
            throw CallError("The procedure has no argument \"" + name + "\".");
        }
    }
}

}  // namespace sorvane
