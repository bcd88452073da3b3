#include "SorvaneMac/Shell/CardView.h"

#include <algorithm>

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/ApaTableView.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/ChartView.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/PreformattedView.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

/// What a card of text alone asks for.
constexpr int textWidth = 300;

struct ToneTexts {
    const char* pill;
    const char* word;
};

ToneTexts textsOf(EvidenceTone tone) {
    switch (tone) {
        case EvidenceTone::met:
            return {"met", "Met"};
        case EvidenceTone::caution:
            return {"caution", "Caution"};
        case EvidenceTone::violated:
            return {"violated", "Violated"};
        case EvidenceTone::unavailable:
            break;
    }
    return {"unavailable", "Not available"};
}

}  // namespace

CardView::CardView(const Card& card, std::function<void(const ScreenLink&)> open)
    : CardFrame(qtText(card.title), qtText(card.subtitle)),
      open_(std::move(open)),
      subtitle_(qtText(card.subtitle)),
      contentWidth_(Theme::px(textWidth)) {
    setProperty("wide", card.wide);
    setAccessibleName(qtText(card.title));
    for (const ReportTable& table : card.tables) {
        addTable(table);
    }
    for (const Chart& chart : card.charts) {
        addChart(chart);
    }
    for (const std::string& paragraph : card.paragraphs) {
        body().addWidget(Labels::text(qtText(paragraph)));
    }
    for (const Passage& passage : card.passages) {
        addPassage(passage);
    }
    addFacts(card.facts);
    if (!card.preformatted.empty()) {
        addPreformatted(qtText(card.preformatted));
    }
    for (const EvidenceLine& line : card.evidence) {
        addEvidence(line);
    }
    for (const std::string& caution : card.cautions) {
        body().addWidget(Labels::text(qtText(caution), "caution"));
    }
    body().addStretch(1);
    addLinks(card.links);
}

QSize CardView::sizeHint() const {
    const QMargins margins = layout()->contentsMargins();
    return {contentWidth_ + margins.left() + margins.right(), CardFrame::sizeHint().height()};
}

void CardView::addTable(const ReportTable& table) {
    const QString title = qtText(table.title.value_or(""));
    if (!title.isEmpty() && title != accessibleName()) {
        QLabel* caption = Labels::text(title);
        QFont italic = Theme::font(13);
        italic.setItalic(true);
        caption->setFont(italic);
        body().addWidget(caption);
    }
    auto* view = new ApaTableView(table, title.isEmpty() ? accessibleName() : title);
    contentWidth_ = std::max(contentWidth_, view->sizeHint().width());
    body().addWidget(view);
}

void CardView::addChart(const Chart& chart) {
    const QString title = qtText(chart.title);
    if (!title.isEmpty() && title != accessibleName()) {
        body().addWidget(Labels::text(title, "cardTitle"));
    }
    if (!chart.subtitle.empty() && qtText(chart.subtitle) != subtitle_) {
        body().addWidget(Labels::text(qtText(chart.subtitle), "small"));
    }
    auto* view = new ChartView(chart);
    contentWidth_ = std::max(contentWidth_, view->sizeHint().width());
    body().addWidget(view);
}

void CardView::addPreformatted(const QString& text) {
    auto* view = new PreformattedView(text);
    contentWidth_ = std::max(contentWidth_, view->sizeHint().width());
    body().addWidget(view);
}

void CardView::addPassage(const Passage& passage) {
    auto* column = new QVBoxLayout;
    column->setSpacing(Theme::px(2));
    column->addWidget(Labels::text(qtText(passage.label), "small"));
    column->addWidget(Labels::text(qtText(passage.text), passage.isCaution ? "caution" : ""));
    body().addLayout(column);
}

void CardView::addFacts(const std::vector<Fact>& facts) {
    if (facts.empty()) {
        return;
    }
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(Theme::px(14));
    grid->setVerticalSpacing(Theme::px(6));
    grid->setColumnStretch(1, 1);
    for (const Fact& fact : facts) {
        const int row = grid->rowCount();
        grid->addWidget(Labels::line(qtText(fact.label), "quiet"), row, 0, Qt::AlignTop);
        grid->addWidget(Labels::text(fact.text.empty() ? "—" : qtText(fact.text)), row, 1);
    }
    body().addLayout(grid);
}

void CardView::addEvidence(const EvidenceLine& line) {
    const ToneTexts texts = textsOf(line.tone);
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(10));
    QLabel* pill = Labels::pill(texts.word, texts.pill);
    pill->setAlignment(Qt::AlignCenter);
    pill->setMinimumWidth(Theme::px(78));
    row->addWidget(pill, 0, Qt::AlignTop);
    auto* words = new QVBoxLayout;
    words->setSpacing(Theme::px(1));
    words->addWidget(Labels::text(qtText(line.title), "strong"));
    if (!line.detail.empty()) {
        words->addWidget(Labels::text(qtText(line.detail), "quiet"));
    }
    for (const Passage& remedy : line.remedies) {
        words->addWidget(
            Labels::text("• " + qtText(remedy.label) + ": " + qtText(remedy.text), "small"));
    }
    row->addLayout(words, 1);
    body().addLayout(row);
}

void CardView::addLinks(const std::vector<ScreenLink>& links) {
    if (links.empty()) {
        return;
    }
    auto* row = new WrapLayout(Theme::px(8));
    for (const ScreenLink& link : links) {
        // A single ampersand would underline what follows it.
        const QString label = qtText(link.label);
        QPushButton* button = Buttons::make(QString(label).replace('&', "&&"), [this, link] {
            if (open_) {
                open_(link);
            }
        });
        button->setAccessibleName(label);
        row->addWidget(button);
    }
    body().addLayout(row);
}

}  // namespace sorvane
