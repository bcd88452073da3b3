#include <algorithm>
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
            if (!count || !(*count >= 0)) {
                return std::nullopt;
            }
            options.rows = static_cast<std::size_t>(*count);
        } else if (options.file.empty()) {
            options.file = words[i];
        } else {
            return std::nullopt;
        }
    }
    return options.file.empty() ? std::nullopt : std::optional(options);
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
        Json description = Json::object();
        description["name"] = dataset.name;
        description["headers"] = toJson(dataset.headers);
        description["rowCount"] = dataset.rowCount();
        description["variables"] = toJson(dataset.variables);
        description["importMetadata"] = toJson(dataset.importMetadata);
        if (options->rows) {
            Json first = Json::array();
            const std::size_t count = std::min(*options->rows, dataset.rows.rowCount());
            for (std::size_t row = 0; row < count; ++row) {
                first.push_back(toJson(dataset.rows.row(row).texts()));
            }
            description["firstRows"] = std::move(first);
            description["lastRow"] = toJson(dataset.rows.row(dataset.rows.rowCount() - 1).texts());
        }
        // A cell may hold bytes that are not UTF-8; they come out as the replacement character.
        streams.out << description.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
        return ExitStatus::success;
    } catch (const ImportError& error) {
        streams.error << error.what() << '\n';
        return ExitStatus::refused;
    }
}

}  // namespace sorvane
