#include "SorvaneCore/Import/Survey/PackageTable.h"

#include <algorithm>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

using namespace PackageJson;

template <typename Value>
std::optional<Value> as(const Element& element) {
    Value value;
    return element.get(value) == simdjson::SUCCESS ? std::optional(value) : std::nullopt;
}

/// The name of a column's entry, be it the name itself or an object that has it.
std::string nameOf(const Element& entry) {
    const std::optional<Object> object = as<Object>(entry);
    if (!object) {
        return stringify(entry);
    }
    for (const std::string_view key : {"name", "header", "label"}) {
        if (std::optional<std::string> name = textMember(*object, key)) {
            return *std::move(name);
        }
    }
    return {};
}

std::optional<Array> valuesOf(const Element& entry) {
    if (const std::optional<Array> plain = as<Array>(entry)) {
        return plain;
    }
    const std::optional<Object> object = as<Object>(entry);
    if (!object) {
        return std::nullopt;
    }
    const std::optional<Array> values = arrayMember(*object, "values");
    return values ? values : arrayMember(*object, "data");
}

void addColumn(const std::string& name, const Element& entry, PackageTable& table) {
    const std::size_t column = table.newColumn(name);
    if (const std::optional<Array> values = valuesOf(entry)) {
        std::size_t row = 0;
        for (const Element value : *values) {
            table.setAt(row++, column, stringify(value));
        }
    }
}

bool addColumns(const Element& columns, PackageTable& table) {
    if (const std::optional<Array> list = as<Array>(columns)) {
        for (const Element entry : *list) {
            addColumn(nameOf(entry), entry, table);
        }
        return true;
    }
    const std::optional<Object> byName = as<Object>(columns);
    if (byName) {
        for (const auto [key, entry] : *byName) {
            const std::string name = entry.is_object() ? nameOf(entry) : std::string();
            addColumn(name.empty() ? std::string(key) : name, entry, table);
        }
    }
    return byName.has_value();
}

void addHeaders(const Array& names, PackageTable& table) {
    for (const Element name : names) {
        table.newColumn(nameOf(name));
    }
}

/// Columns that a list has beyond those known have no name.
void addRow(const Element& row, PackageTable& table) {
    table.beginRow();
    if (const std::optional<Array> cells = as<Array>(row)) {
        std::size_t column = 0;
        for (const Element cell : *cells) {
            if (column == table.headers().size()) {
                table.newColumn({});
            }
            table.set(column++, stringify(cell));
        }
    } else if (const std::optional<Object> cellsByName = as<Object>(row)) {
        for (const auto [key, cell] : *cellsByName) {
            table.set(table.column(std::string(key)), stringify(cell));
        }
    }
}

/// Whether a list can be the names above lists of values: texts alone, none of them a number.
bool isHeader(const Array& cells) {
    return cells.size() > 0 && std::all_of(cells.begin(), cells.end(), [](const Element& cell) {
               const auto text = as<std::string_view>(cell);
               return text && !UnicodeText::trimmed(*text).empty() &&
                      !NumberText::parse(UnicodeText::trimmed(*text));
           });
}

}  // namespace

std::size_t PackageTable::column(const std::string& name) {
    const auto known = columnOf_.find(name);
    return known == columnOf_.end() ? newColumn(name) : known->second;
}

std::size_t PackageTable::newColumn(const std::string& name) {
    const std::size_t index = headers_.size();
    headers_.push_back(name);
    nextRow_.push_back(0);
    columnOf_.emplace(name, index);
    cells_.widen(headers_.size());
    return index;
}

void PackageTable::set(std::size_t column, std::string_view text) {
    if (nextRow_[column] < rowCount_) {
        setAt(rowCount_ - 1, column, text);
    }
}

void PackageTable::setAt(std::size_t row, std::size_t column, std::string_view text) {
    rowCount_ = std::max(rowCount_, row + 1);
    if (!cells_.isTooLarge(rowCount_)) {
        cells_.set(row, column, text);
        nextRow_[column] = row + 1;
    }
}

std::optional<TextTable> PackageTable::finish() {
    return cells_.isTooLarge(rowCount_) ? std::nullopt : std::optional(cells_.finish(rowCount_));
}

std::optional<PackageTable> extractRows(const Object& object, std::size_t packageBytes) {
    PackageTable table(packageBytes);
    const std::optional<Element> columns = member(object, "columns");
    if (columns && addColumns(*columns, table)) {
        return table;
    }
    const std::optional<Array> rows = arrayMember(object, "rows");
    const std::optional<Array> headers = arrayMember(object, "headers");
    if (rows && headers) {
        addHeaders(*headers, table);
        for (const Element row : *rows) {
            addRow(row, table);
        }
        return table;
    }
    return rows ? extractRows(*rows, packageBytes) : std::nullopt;
}

std::optional<PackageTable> extractRows(const Array& rows, std::size_t packageBytes) {
    PackageTable table(packageBytes);
    bool isFirst = true;
    for (const Element row : rows) {
        const std::optional<Array> cells = isFirst ? as<Array>(row) : std::nullopt;
        isFirst = false;
        if (cells && isHeader(*cells)) {
            addHeaders(*cells, table);
        } else {
            addRow(row, table);
        }
    }
    return table;
}

}  // namespace sorvane
