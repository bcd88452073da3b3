#include "SorvaneMac/Report/ReportExporter.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneMac/Report/ReportTableMaker.h"

namespace sorvane::ReportExporter {
namespace {

constexpr std::string_view reportTitle = "Results";

const TextStyle titleStyle{.points = 20, .bold = true};
const TextStyle headingStyle{.points = 14, .bold = true};
const TextStyle textStyle{.points = 12};
const TextStyle labelStyle{.points = 12, .italic = true};
const TextStyle provenanceStyle{.font = FontRole::monospaced, .points = 11};

TextRun run(std::string_view text, const TextStyle& style) {
    return {.text = std::string(text), .style = style};
}

/// Lays the findings out one after the other and keeps the running numbers of tables and figures.
class Layout {
public:
    explicit Layout(RichDocument& document) : document_(document) {}

    void addOpening(std::string_view datasetName, std::int64_t cases) {
        add({.runs = {run(reportTitle, titleStyle)}, .spaceAfter = 6});
        std::string dataset = "Dataset: ";
        dataset += datasetName;
        dataset += "   Cases: ";
        dataset += NumberText::integer(cases);
        add({.runs = {run(dataset, provenanceStyle)}, .spaceAfter = 14});
    }

    void addFinding(const ReportItem& item) {
        setApart();
        add({.runs = {run(item.title, headingStyle)}, .spaceAfter = 4, .keepWithNext = true});
        addText(item.apaSummary);
        if (item.table) {
            addTable(*item.table, item.title);
        }
        for (const ReportTable& table : item.extraTables.value_or(std::vector<ReportTable>{})) {
            addTable(table, item.title);
        }
        if (item.figure) {
            addFigure(*item.figure, item.figureCaption.value_or(item.title));
        }
        if (item.caution && !item.caution->empty()) {
            addText("Caution: " + *item.caution);
        }
    }

private:
    void add(Paragraph paragraph) { document_.paragraphs.push_back(std::move(paragraph)); }

    void setApart() {
        const Paragraph& last = document_.paragraphs.back();
        if (last.block || last.figure || !last.runs.empty()) {
            add({});
        }
    }

    /// Running text, a paragraph a line; an empty line stays one.
    void addText(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            if (end > 0) {
                add({.runs = {run(text.substr(0, end), textStyle)}, .spaceAfter = 8});
            } else {
                add({});
            }
            text.remove_prefix(std::min(end + 1, text.size()));
        }
    }

    void addTable(const ReportTable& table, const std::string& findingTitle) {
        setApart();
        std::vector<Paragraph> paragraphs =
            ReportTableMaker::apaTable(table, ++tables_, table.title.value_or(findingTitle));
        document_.paragraphs.insert(document_.paragraphs.end(),
                                    std::make_move_iterator(paragraphs.begin()),
                                    std::make_move_iterator(paragraphs.end()));
        setApart();
    }

    void addFigure(const std::vector<std::uint8_t>& png, std::string_view caption) {
        setApart();
        std::optional<InlineFigure> figure = inlineFigure(png);
        const bool readable = figure.has_value();
        if (readable) {
            add({.spaceAfter = 4, .keepWithNext = true, .figure = std::move(figure)});
        }
        const std::string label = "Figure " + NumberText::integer(++figures_) + ". ";
        Paragraph line{.runs = {run(label, labelStyle), run(caption, textStyle)}, .spaceAfter = 8};
        if (!readable) {
            line.runs.push_back(run(" (The picture of this figure cannot be read.)", textStyle));
        }
        add(std::move(line));
        setApart();
    }

    RichDocument& document_;
    int tables_ = 0;
    int figures_ = 0;
};

}  // namespace

RichDocument attributed(std::span<const ReportItem> items,
                        std::string_view datasetName,
                        std::int64_t cases) {
    RichDocument document;
    Layout layout(document);
    layout.addOpening(datasetName, cases);
    for (const ReportItem& item : items) {
        layout.addFinding(item);
    }
    return document;
}

}  // namespace sorvane::ReportExporter
