#include "SorvaneMac/Shell/IntelligenceCard.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Drafting/DraftingWording.h"
#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/ReviewDesk.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

constexpr auto cardTitle = "Sorvane Intelligence";
constexpr auto cardSubtitle =
    "A language model on this machine puts findings into words; it computes nothing";
constexpr auto summaryChoice = "Summary of all staged findings";

QLineEdit* settingLine(const QString& name, const QString& example, Field<std::string>& field) {
    auto* line = new QLineEdit;
    line->setPlaceholderText(example);
    line->setAccessibleName(name);
    QObject::connect(line, &QLineEdit::editingFinished, line,
                     [line, &field] { field.set(utf8(line->text())); });
    return line;
}

void showText(QLabel& label, const std::optional<std::string>& text) {
    Labels::show(label, qtText(text.value_or("")));
    label.setVisible(text.has_value() && !text->empty());
}

}  // namespace

IntelligenceCard::IntelligenceCard(Workspace& workspace)
    : CardFrame(cardTitle, cardSubtitle),
      workspace_(workspace),
      board_(workspace.desk->intelligence, workspace.state.defaults(), [this] { refreshDraft(); }) {
    addSettings();
    addChoice();
    addDraft();
    addFeedback();
}

void IntelligenceCard::addSettings() {
    SharingFields& fields = workspace_.state.sharing;
    isOn_ = new QCheckBox("Draft with a local model");
    connect(isOn_, &QCheckBox::clicked, this,
            [&fields](bool isOn) { fields.intelligenceIsOn.set(isOn); });
    address_ = settingLine("Address", "http://127.0.0.1:11434/v1", fields.intelligenceAddress);
    model_ = settingLine("Model", "as the server names it", fields.intelligenceModel);
    reason_ = Labels::text("", "caution");
    remedy_ = Labels::text(qtText(DraftingWording::remedy()), "small");
    auto* form = new QFormLayout;
    form->setHorizontalSpacing(Theme::px(12));
    form->addRow("Address", address_);
    form->addRow("Model", model_);
    body().addWidget(isOn_);
    body().addLayout(form);
    body().addWidget(reason_);
    body().addWidget(remedy_);
}

void IntelligenceCard::addChoice() {
    source_ = new QComboBox;
    source_->setAccessibleName("What to put into words");
    source_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    source_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    start_ = Buttons::make(
        "Draft",
        [this] {
            if (board_.isDrafting()) {
                board_.stop();
            } else {
                draft();
            }
        },
        Buttons::Weight::primary);
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::px(10));
    row->addWidget(source_, 1);
    row->addWidget(start_);
    body().addLayout(row);
}

void IntelligenceCard::addDraft() {
    text_ = Labels::text("");
    flag_ = Labels::text("", "caution");
    failure_ = Labels::text("", "error");
    text_->setAccessibleName("Draft");
    for (QLabel* label : {text_, flag_, failure_}) {
        body().addWidget(label);
    }
    auto* buttons = new WrapLayout(Theme::px(8));
    for (const IntelligenceRefinement each :
         {IntelligenceRefinement::shorter, IntelligenceRefinement::simpler,
          IntelligenceRefinement::formal}) {
        refinements_.push_back(
            Buttons::make(qtText(displayName(each)), [this, each] { board_.refine(each); }));
        buttons->addWidget(refinements_.back());
    }
    copy_ = Buttons::make("Copy text", [this] { Clipboard::setText(qtText(board_.text())); });
    buttons->addWidget(copy_);
    body().addLayout(buttons);
}

void IntelligenceCard::addFeedback() {
    using enum IntelligenceFeedback::Rating;
    helpful_ = Labels::line(qtText(DraftingWording::helpful), "quiet");
    thanks_ = Labels::line(qtText(DraftingWording::thanks), "quiet");
    auto* row = new WrapLayout(Theme::px(8));
    row->addWidget(helpful_);
    const std::pair<std::string_view, IntelligenceFeedback::Rating> offered[] = {
        {DraftingWording::rateHelpful, helpful}, {DraftingWording::rateNotHelpful, notHelpful}};
    for (const auto& each : offered) {
        const IntelligenceFeedback::Rating rating = each.second;
        ratings_.push_back(Buttons::make(
            qtText(each.first), [this, rating] { rate(rating); }, Buttons::Weight::link));
        row->addWidget(ratings_.back());
    }
    row->addWidget(thanks_);
    body().addLayout(row);
}

void IntelligenceCard::refresh() {
    refreshSettings();
    if (offered_ != workspace_.state.reportItems.get() || source_->count() == 0) {
        offered_ = workspace_.state.reportItems.get();
        source_->clear();
        source_->addItem(summaryChoice);
        for (const ReportItem& each : offered_) {
            source_->addItem(qtText(each.title));
        }
    }
    refreshDraft();
}

void IntelligenceCard::refreshSettings() {
    const SharingFields& fields = workspace_.state.sharing;
    isOn_->setChecked(fields.intelligenceIsOn.get());
    const std::pair<QLineEdit*, const Field<std::string>*> lines[] = {
        {address_, &fields.intelligenceAddress}, {model_, &fields.intelligenceModel}};
    for (const auto& [line, field] : lines) {
        // What is being typed is not yet what the field holds.
        if (!line->hasFocus() || !line->isModified()) {
            line->setText(qtText(field->get()));
        }
    }
    const std::optional<std::string> reason = board_.unavailableReason();
    showText(*reason_, reason);
    remedy_->setVisible(reason.has_value());
}

void IntelligenceCard::refreshDraft() {
    const bool isDrafting = board_.isDrafting();
    start_->setText(isDrafting ? "Stop" : "Draft");
    start_->setAccessibleName(start_->text());
    start_->setEnabled(isDrafting || (!board_.unavailableReason() && !offered_.empty()));
    source_->setEnabled(!isDrafting && !offered_.empty());
    showText(*text_, board_.text());
    showText(*flag_, isDrafting ? std::nullopt : board_.flag());
    showText(*failure_, board_.failure());
    for (QPushButton* each : refinements_) {
        each->setVisible(board_.isFinished());
        each->setEnabled(!board_.unavailableReason());
    }
    copy_->setVisible(board_.isFinished());
    helpful_->setVisible(board_.isFinished() && !board_.isRated());
    for (QPushButton* each : ratings_) {
        each->setVisible(board_.isFinished() && !board_.isRated());
    }
    thanks_->setVisible(board_.isRated());
}

void IntelligenceCard::draft() {
    const int chosen = source_->currentIndex();
    if (chosen > 0) {
        board_.interpret(offered_[static_cast<std::size_t>(chosen) - 1]);
    } else {
        board_.summarize(offered_);
    }
}

void IntelligenceCard::rate(IntelligenceFeedback::Rating rating) {
    constexpr double millisecondsInSecond = 1000.0;
    board_.rate(rating,
                static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / millisecondsInSecond);
}

}  // namespace sorvane
