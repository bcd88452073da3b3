#include "SorvaneMac/Shell/CardView.h"

#include <QLabel>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/ApaTableView.h"
#include "SorvaneMac/Shell/ChartView.h"
#include "SorvaneMac/Shell/FlowLayout.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

ReportTable tableWithLongNote() {
    ReportTable table;
    table.title = "Numbers at risk";
    table.headers = {"Group", "0", "10", "20"};
    table.rows = {{"First", "20", "12", "3"}, {"Second", "18", "9", "1"}};
    table.note =
        "The number at risk is the number of cases that are still under observation at the time "
        "and have not had the event before it; a case censored at a time is still at risk then.";
    return table;
}

Chart lineChart() {
    Chart chart;
    chart.title = "Curves";
    chart.plot = LinePlot{.series = {{.name = "First", .x = {0, 1, 2}, .y = {1.0, 0.5, 0.2}}}};
    return chart;
}

template <typename View>
const View* part(const CardView& card) {
    for (const QWidget* each : card.findChildren<QWidget*>()) {
        if (const auto* found = dynamic_cast<const View*>(each)) {
            return found;
        }
    }
    return nullptr;
}

TEST(CardView, ShowsItsTablesWholeWhateverItsWidth) {
    offscreenApplication();
    Card card{.title = "Survival", .subtitle = "Of two groups"};
    card.tables = {tableWithLongNote()};
    card.charts = {lineChart()};
    card.passages = {{.label = "How to read it", .text = std::string(300, 'a') + " b"}};
    for (const bool withOther : {false, true}) {
        QWidget page;
        auto* flow = new FlowLayout(12);
        page.setLayout(flow);
        auto* shown = new CardView(card, {});
        flow->addWidget(shown);
        if (withOther) {
            flow->addWidget(new CardView({.title = "Other", .paragraphs = {"Short."}}, {}));
        }
        for (const int width : {340, 420, 560, 700, 900, 1400}) {
            page.resize(width, flow->heightForWidth(width));
            page.show();
            QCoreApplication::processEvents();
            const auto* table = part<ApaTableView>(*shown);
            EXPECT_GE(table->height(), table->heightForWidth(table->width())) << width;
            const auto* chart = part<ChartView>(*shown);
            EXPECT_GE(chart->height(), chart->minimumSizeHint().height()) << width;
        }
    }
}

TEST(CardView, ShowsItsTextsWholeWhateverTheirWords) {
    offscreenApplication();
    const std::string name = "Geschwindigkeitsbegrenzungsüberschreitungen";
    CardView card({.title = name + " by " + name,
                   .subtitle = name,
                   .paragraphs = {name + " = .123"},
                   .cautions = {"Do not claim that " + name + " matters."}},
                  {});
    for (const int width : {150, 240, 340}) {
        card.resize(width, card.heightForWidth(width));
        card.show();
        QCoreApplication::processEvents();
        for (const QLabel* label : card.findChildren<QLabel*>()) {
            const QRect room = label->contentsRect();
            const QRect text =
                label->fontMetrics().boundingRect(room, Qt::TextWordWrap, label->text());
            EXPECT_LE(text.width(), room.width()) << width << ": " << utf8(label->text());
            EXPECT_LE(text.height(), room.height()) << width << ": " << utf8(label->text());
        }
    }
}

}  // namespace
}  // namespace sorvane
