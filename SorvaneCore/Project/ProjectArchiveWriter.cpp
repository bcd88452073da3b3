
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonQuoting.h"
#include "SorvaneCore/Project/ProjectArchive.h"
#include "SorvaneCore/Project/ToJson.h"

namespace sorvane {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
constexpr int indentWidth = 2;
constexpr std::string_view beforeRow = "\n    [";
constexpr std::string_view afterRow = "\n    ]";
constexpr std::string_view beforeCell = "\n      ";

/// A column whose cells are quoted once per distinct text, where there are few of these.
class QuotedColumn {
public:
    explicit QuotedColumn(const TextColumn& column) : column_(column) {
        if (!column.hasCodes() || column.levelCount() > keptLevels) {
            return;
        }
        for (std::size_t code = 0; code < column.levelCount(); ++code) {
            levels_.emplace_back();
            appendJsonString(levels_.back(), column.level(code));
        }
    }
    void append(std::string& out, std::size_t row) const {
        const std::size_t code = column_.code(row);
        if (levels_.empty()) {
            appendJsonString(out, column_.level(code));
        } else {
            out += levels_[code];
        }
    }

private:
    static constexpr std::size_t keptLevels = 4096;

    const TextColumn& column_;
    std::vector<std::string> levels_;
};

/// Gathers small pieces into large ones.
class PieceBuffer {
public:
    explicit PieceBuffer(const TakeBytes& take) : take_(take) {}

    std::string& text() { return text_; }
    void handOverIfFull() {
        if (text_.size() >= pieceSize) {
            handOver();
        }
    }
    void handOver() {
        take_(text_);
        text_.clear();
    }

private:
    const TakeBytes& take_;
    std::string text_;
};

void writeRows(PieceBuffer& out, const TextTable& rows) {
    const std::vector<TextTable::Column>& shared = rows.columns();
    std::vector<QuotedColumn> columns;
    columns.reserve(shared.size());
    for (const TextTable::Column& column : shared) {
        columns.emplace_back(*column);
    }
    std::string& text = out.text();
    text += '[';
    for (std::size_t row = 0; row < rows.rowCount(); ++row) {
        text += row == 0 ? "" : ",";
        text += beforeRow;
        for (std::size_t column = 0; column < columns.size(); ++column) {
            text += column == 0 ? "" : ",";
            text += beforeCell;
            columns[column].append(text, row);
        }
        text += columns.empty() ? "]" : afterRow;
        out.handOverIfFull();
    }
    text += rows.rowCount() == 0 ? "]" : "\n  ]";
}

/// The indented text of a value with its keys sorted, as it stands one level deep.
template <typename T>
std::string indented(const T& value) {
    using nlohmann::json;
    const std::string text =
        json(toJson(value)).dump(indentWidth, ' ', false, json::error_handler_t::replace);
    std::string deeper;
    // A line feed inside a string is escaped, so each one here begins a line.
    for (const char c : text) {
        deeper += c;
        if (c == '\n') {
            deeper.append(indentWidth, ' ');
        }
    }
    return deeper;
}

/// Writes the members of the outermost object in the order of the calls.
class MemberWriter {
public:
    explicit MemberWriter(PieceBuffer& out) : out_(out) {}

    template <typename T>
    void add(std::string_view key, const T& value) {
        begin(key);
        if constexpr (std::is_same_v<T, TextTable>) {
            writeRows(out_, value);
        } else {
            out_.text() += indented(value);
        }
        out_.handOverIfFull();
    }
    void end() {
        out_.text() += "\n}";
        out_.handOver();
    }

private:
    void begin(std::string_view key) {
        out_.text() += isFirst_ ? "{\n  \"" : ",\n  \"";
        out_.text() += key;
        out_.text() += "\": ";
        isFirst_ = false;
    }

    PieceBuffer& out_;
    bool isFirst_ = true;
};

}  // namespace

void ProjectArchive::encode(const ProjectArchive& archive, const TakeBytes& take) {
    if (archive.headers.size() > mostColumns) {
        throw ProjectArchiveError("A project holds at most " +
                                  NumberText::integer(std::int64_t{mostColumns}) + " variables.");
    }
    PieceBuffer out(take);
    MemberWriter members(out);
    members.add("createdAt", archive.createdAt);
    members.add("datasetName", archive.datasetName);
    members.add("engineVersion", archive.engineVersion);
    members.add("headers", archive.headers);
    members.add("modifiedAt", archive.modifiedAt);
    members.add("rows", archive.rows);
    members.add("schemaVersion", archive.schemaVersion);
    members.add("settings", archive.settings);
    members.add("transformationLog", archive.transformationLog);
    members.add("variableStates", archive.variableStates);
    members.end();
}

std::string ProjectArchive::encode(const ProjectArchive& archive) {
    std::string bytes;
    encode(archive, [&bytes](std::string_view piece) { bytes += piece; });
    return bytes;
}

}  // namespace sorvane
