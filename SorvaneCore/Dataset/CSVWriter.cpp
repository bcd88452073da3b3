#include "SorvaneCore/Dataset/CSVWriter.h"

#include <string_view>

namespace sorvane::CSVWriter {

namespace {

bool needsQuotes(std::string_view cell) {
    return cell.find_first_of(",\"\n\r") != std::string_view::npos;
}

std::string quoted(std::string_view cell) {
    if (!needsQuotes(cell)) {
        return std::string(cell);
    }
    std::string text = "\"";
    for (const char c : cell) {
        text += c == '"' ? "\"\"" : std::string_view(&c, 1);
    }
    return text + "\"";
}

std::vector<std::string> quotedLevels(const TextColumn& column) {
    std::vector<std::string> levels;
    levels.reserve(column.levelCount());
    for (std::size_t code = 0; code < column.levelCount(); ++code) {
        levels.push_back(quoted(column.level(code)));
    }
    return levels;
}

}  // namespace

std::string text(const ImportedDataset& dataset) {
    std::string text;
    for (std::size_t column = 0; column < dataset.headers.size(); ++column) {
        text += column == 0 ? "" : ",";
        text += quoted(dataset.headers[column]);
    }
    text += '\n';
    std::vector<std::vector<std::string>> levels;
    for (const TextTable::Column& column : dataset.rows.columns()) {
        levels.push_back(quotedLevels(*column));
    }
    for (std::size_t row = 0; row < dataset.rows.rowCount(); ++row) {
        for (std::size_t column = 0; column < levels.size(); ++column) {
            text += column == 0 ? "" : ",";
            text += levels[column][dataset.rows.column(column).code(row)];
        }
        text += '\n';
    }
    return text;
}

}  // namespace sorvane::CSVWriter
