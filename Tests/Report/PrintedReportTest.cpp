#include "SorvaneMac/Report/PrintedReport.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

#include <gtest/gtest.h>

#include "SorvaneMac/Report/ReportExporter.h"

namespace sorvane {
namespace {

constexpr int dotsPerInch = 720;
constexpr double unitsPerPoint = dotsPerInch / 72.0;

/// Keeps the words that are drawn, and whether all of them stand within the text area.
class Recorder : public QPaintEngine {
public:
    Recorder() : QPaintEngine(AllFeatures) {}

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    void drawPath(const QPainterPath&) override {}
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
    Type type() const override { return User; }

    void drawTextItem(const QPointF& at, const QTextItem& item) override {
        const double baseline = painter()->transform().map(at).y();
        isInside = isInside && baseline - item.ascent() > -unitsPerPoint &&
                   baseline + item.descent() < (PrintedReport::textHeight + 1) * unitsPerPoint;
        // A long text is drawn in several items, which part words.
        const bool continues = at.y() == lastEnd_.y() && std::abs(at.x() - lastEnd_.x()) < 1;
        text += (continues ? "" : " ") + item.text().toStdString();
        lastEnd_ = at + QPointF(item.width(), 0);
    }

    std::string text;
    bool isInside = true;

private:
    QPointF lastEnd_;
};

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

class RecordingPaper : public QPaintDevice {
public:
    QPaintEngine* paintEngine() const override { return &recorder; }
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
            case PdmWidth:
            case PdmHeight:
                return 20 * dotsPerInch;
            case PdmDpiX:
            case PdmDpiY:
            case PdmPhysicalDpiX:
            case PdmPhysicalDpiY:
                return dotsPerInch;
            default:
                return 1;
        }
    }

    mutable Recorder recorder;
};

struct Printed {
    /// The words of each page.
    std::vector<std::vector<std::string>> pages;
    bool isInside = true;
};

Printed print(const RichDocument& document) {
    RecordingPaper paper;
    const PrintedReport report(document, paper);
    Printed printed;
    QPainter painter(&paper);
    for (int page = 0; page < report.pageCount(); ++page) {
        paper.recorder.text.clear();
        report.drawPage(page, painter);
        printed.pages.push_back(wordsOf(paper.recorder.text));
    }
    printed.isInside = paper.recorder.isInside;
    return printed;
}

/// Words of which no two are the same.
class WordSource {
public:
    std::string words(int count) {
        std::string text;
        for (int index = 0; index < count; ++index) {
            text += (index > 0 ? " w" : "w") + std::to_string(++last_);
        }
        return text;
    }

    ReportItem finding(int count) { return {.title = words(1), .apaSummary = words(count)}; }

    ReportItem table(int rows, int cellWords, int noteWords) {
        ReportItem item = finding(40);
        item.table = ReportTable{.headers = {"Item", "M"}, .note = words(noteWords)};
        for (int row = 0; row < rows; ++row) {
            item.table->rows.push_back({words(1), words(cellWords)});
        }
        return item;
    }

private:
    int last_ = 0;
};

/// A word that stands in the findings and not in what the report adds to them.
bool isUnique(const std::string& word) {
    return word.starts_with('w');
}

std::vector<ReportItem> repeated(int count, auto make) {
    std::vector<ReportItem> items;
    for (int index = 0; index < count; ++index) {
        items.push_back(make(index));
    }
    return items;
}

TEST(PrintedReport, PrintsEveryWordOnce) {
    WordSource source;
    struct Case {
        int line;
        std::vector<ReportItem> items;
    };
    const std::vector<Case> cases{
        {__LINE__, {source.finding(620), source.finding(20)}},
        {__LINE__, {source.finding(700), source.finding(700)}},
        {__LINE__, {source.finding(450), source.finding(2000), source.finding(3)}},
        {__LINE__, {source.table(3, 1, 700), source.finding(20)}},
        {__LINE__, {source.table(3, 800, 5), source.finding(20)}},
        {__LINE__, {source.table(30, 2, 5), source.finding(20)}},
        {__LINE__, repeated(10,
                            [&](int) {
                                ReportItem item = source.table(6, 1, 9);
                                item.apaSummary = source.words(1000);
                                return item;
                            })},
        {__LINE__, repeated(40,
                            [&](int index) {
                                return index % 2 == 0 ? source.finding(index * 23)
                                                      : source.table(index, 3, index);
                            })},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.line);
        const RichDocument document = ReportExporter::attributed(each.items, "data", 1);
        const Printed printed = print(document);
        EXPECT_TRUE(printed.isInside);
        std::vector<std::string> found;
        for (const std::vector<std::string>& page : printed.pages) {
            EXPECT_TRUE(page.size() > 10 || &page == &printed.pages.back());
            std::ranges::copy_if(page, std::back_inserter(found), isUnique);
        }
        std::vector<std::string> expected = wordsOf(document.plainText());
        std::erase_if(expected, std::not_fn(isUnique));
        // A row that is parted prints its cells page by page.
        std::ranges::sort(found);
        std::ranges::sort(expected);
        std::vector<std::string> differing;
        std::ranges::set_symmetric_difference(found, expected, std::back_inserter(differing));
        EXPECT_EQ(differing, std::vector<std::string>{});
    }
}

/// A correlation matrix of as many variables.
ReportItem matrix(int variables) {
    ReportItem item{.title = "Correlations", .apaSummary = "r(283) = .17"};
    item.table = ReportTable{.headers = {"Variable", "M", "SD"}};
    for (int row = 1; row <= variables; ++row) {
        const std::string number = std::to_string(row);
        item.table->headers.push_back(number);
        std::vector<std::string> cells{number + ". satisfaction_" + number, "68.36", "1.08"};
        cells.resize(3 + static_cast<std::size_t>(row) - 1, "-.47***");
        item.table->rows.push_back(std::move(cells));
    }
    return item;
}

TEST(PrintedReport, KeepsNumbersInOnePiece) {
    for (const int variables : {3, 8, 14}) {
        SCOPED_TRACE(variables);
        std::vector<ReportItem> items{matrix(variables)};
        // Wherever the line ends, the number stays whole.
        for (int length = 40; length < 120; ++length) {
            items.push_back({.apaSummary = std::string(static_cast<std::size_t>(length), 'w') +
                                           " r = .17, p = .003 [-.12, .34]"});
        }
        const Printed printed = print(ReportExporter::attributed(items, "data", 1));
        std::vector<std::string> broken;
        for (const std::vector<std::string>& page : printed.pages) {
            std::ranges::copy_if(page, std::back_inserter(broken), [](const std::string& word) {
                return word == "." || word == "-." || word == "[-." || word == "***" ||
                       word == "47***" || word == "*";
            });
        }
        EXPECT_EQ(broken, std::vector<std::string>{});
    }
}

TEST(PrintedReport, RepeatsTheHeadsOfALongTable) {
    WordSource source;
    const Printed printed =
        print(ReportExporter::attributed(std::vector{source.table(90, 1, 5)}, "data", 1));
    EXPECT_EQ(printed.pages.size(), 3U);
    for (const std::vector<std::string>& page : printed.pages) {
        EXPECT_EQ(std::ranges::count(page, "M"), 1);
    }
}

TEST(PrintedReport, KeepsHeadingsAndNotesWithTheirTables) {
    // Wherever the page ends fall, a page that begins with a note or ends with a heading is a fault.
    WordSource source;
    for (int words = 300; words < 560; words += 10) {
        SCOPED_TRACE(words);
        ReportItem table = source.table(4, 1, 3);
        table.title = "heading";
        table.apaSummary.clear();
        const Printed printed =
            print(ReportExporter::attributed(std::vector{source.finding(words), table}, "data", 1));
        for (const std::vector<std::string>& page : printed.pages) {
            EXPECT_NE(page.front(), "Note.");
            EXPECT_NE(page.back(), "heading");
        }
    }
}

}  // namespace
}  // namespace sorvane
