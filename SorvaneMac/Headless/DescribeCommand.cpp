#include <algorithm>
#include <cmath>
#include <new>
#include <optional>
#include <ostream>

#include "SorvaneCore/Import/ImportError.h"
#include "SorvaneCore/Import/SpreadsheetImporter.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/DatasetJson.h"
#include "SorvaneMac/Headless/Commands.h"

namespace sorvane {

namespace {

constexpr std::string_view usage = "Describe a file so: sorvane describe FILE [--rows N]";

/// More than any table has, and a number of any size type.
constexpr double mostRows = 1e9;

struct DescribeOptions {
    std::string file;
    std::optional<std::size_t> rows;
};

std::optional<DescribeOptions> readOptions(const std::vector<std::string>& words) {
    DescribeOptions options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--rows") {
            const std::optional<double> count =
                i + 1 < words.size() ? NumberText::parse(words[++i]) : std::nullopt;
            if (!count || !(*count >= 0) || std::trunc(*count) != *count || std::isinf(*count)) {
                return std::nullopt;
            }
            options.rows = static_cast<std::size_t>(std::min(*count, mostRows));
        } else if (options.file.empty()) {
            options.file = words[i];
        } else {
            return std::nullopt;
        }
    }
    return options.file.empty() ? std::nullopt : std::optional(options);
}

void print(const ImportedDataset& dataset, std::optional<std::size_t> rows, std::ostream& out) {
    JsonTextSink sink(out);
    const auto member = [&sink](std::string_view name, const auto& value) {
        sink.key(name);
        writeJson(sink, value);
    };
    sink.beginObject();
    member("name", dataset.name);
    member("headers", dataset.headers);
    member("rowCount", dataset.rowCount());
    member("variables", dataset.variables);
    member("importMetadata", dataset.importMetadata);
    if (rows) {
        std::vector<TextTable::Row> first;
        for (std::size_t row = 0; row < std::min(*rows, dataset.rows.rowCount()); ++row) {
            first.push_back(dataset.rows.row(row));
        }
        member("firstRows", first);
        member("lastRow", dataset.rows.row(dataset.rows.rowCount() - 1));
    }
    sink.endObject();
    sink.flush();
    out << '\n';
}

}  // namespace

ExitStatus describeCommand(const std::vector<std::string>& words, CommandStreams streams) {
    const std::optional<DescribeOptions> options = readOptions(words);
    if (!options) {
        streams.error << usage << '\n';
        return ExitStatus::badArguments;
    }
    try {
        const ImportedDataset dataset = SpreadsheetImporter().importData(options->file);
        print(dataset, options->rows, streams.out);
        return ExitStatus::success;
    } catch (const ImportError& error) {
        streams.error << error.what() << '\n';
    } catch (const std::bad_alloc&) {
        streams.error << ImportMemoryError().what() << '\n';
    }
    return ExitStatus::refused;
}

}  // namespace sorvane
