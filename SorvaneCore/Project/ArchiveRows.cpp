#include "SorvaneCore/Project/ArchiveRows.h"

#include <algorithm>
#include <future>
#include <simdjson.h>
#include <string>
#include <vector>

#include "SorvaneCore/Import/NormalizedRows.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonStream.h"
#include "SorvaneCore/Project/ProjectArchive.h"

namespace sorvane::ArchiveRows {

namespace {

constexpr std::size_t windowSize = std::size_t{2} << 20;
constexpr std::size_t mostPaddedCells = 20'000'000;

/// Takes windows of rows, each a JSON list of its own, and gathers their cells by column.
class RowGatherer {
public:
    explicit RowGatherer(std::size_t columnCount) : columnCount_(columnCount), rows_(columnCount) {}

    void add(std::string& window) {
        // The parser reads a little beyond the end.
        window.reserve(window.size() + simdjson::SIMDJSON_PADDING);
        simdjson::ondemand::document list;
        simdjson::ondemand::array rows;
        if (parser_.iterate(window.data(), window.size(), window.capacity()).get(list) ||
            list.get_array().get(rows)) {
            fail("needs a list of texts");
        }
        for (auto each : rows) {
            simdjson::ondemand::array row;
            if (each.get_array().get(row)) {
                fail("needs a list of texts");
            }
            addRow(row);
        }
    }
    void expectRows(std::size_t rows) { rows_.expectRows(rows); }
    std::size_t size() const { return rows_.size(); }
    TextTable finish() { return rows_.finish(); }

private:
    void addRow(simdjson::ondemand::array row) {
        cells_.clear();
        for (auto each : row) {
            std::string_view cell;
            if (const simdjson::error_code error = each.get_string().get(cell)) {
                fail(error == simdjson::STRING_ERROR ? "has a text that cannot be read"
                                                     : "needs a list of texts");
            }
            cells_.push_back(cell);
        }
        paddedCells_ += columnCount_ - std::min(columnCount_, cells_.size());
        if (paddedCells_ > mostPaddedCells) {
            throw ProjectArchiveError("its rows have far fewer cells than there are variables");
        }
        rows_.add(static_cast<std::int64_t>(size()), cells_, cells_.size());
    }
    [[noreturn]] void fail(std::string_view what) const {
        throw ProjectArchiveError("rows[" + NumberText::integer(static_cast<std::int64_t>(size())) +
                                  "] " + std::string(what));
    }

    std::size_t columnCount_;
    simdjson::ondemand::parser parser_;
    NormalizedRows rows_;
    std::vector<std::string_view> cells_;
    std::size_t paddedCells_ = 0;
};

/// Takes as many rows as a window holds out of a list whose opening bracket is passed.
///
/// Returns    whether there are more
bool fillWindow(JsonStream& stream, std::string& window) {
    window = "[";
    while (window.size() < windowSize) {
        stream.appendValue(window);
        if (stream.takeIf(']')) {
            window += ']';
            return false;
        }
        stream.take(',');
        window += ',';
    }
    window.back() = ']';
    return true;
}

}  // namespace

TextTable read(JsonStream& stream, std::size_t columnCount) {
    RowGatherer rows(columnCount);
    stream.take('[');
    if (stream.takeIf(']')) {
        return rows.finish();
    }
    std::string filling;
    std::string parsing;
    const std::size_t begin = stream.place();
    bool hasMore = fillWindow(stream, filling);
    std::swap(filling, parsing);
    rows.add(parsing);
    if (hasMore) {
        const std::size_t passed = stream.place() - begin;
        rows.expectRows(rows.size() * (stream.size() / passed + 1));
    }
    std::future<void> pending;
    while (hasMore) {
        hasMore = fillWindow(stream, filling);
        if (pending.valid()) {
            pending.get();
        }
        std::swap(filling, parsing);
        pending = std::async(std::launch::async, [&rows, &parsing] { rows.add(parsing); });
    }
    if (pending.valid()) {
        pending.get();
    }
    return rows.finish();
}

}  // namespace sorvane::ArchiveRows
