#include "SorvaneMac/Shell/ReviewLiveSheet.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTime>
#include <QVBoxLayout>

#include "SorvaneMac/Review/ReviewWording.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr double codeSize = 40;

/// The digits one by one, as they are read out.
QString spelled(const std::string& code) {
    QStringList digits;
    for (const char each : code) {
        digits << QString(each);
    }
    return digits.join(' ');
}

}  // namespace

BriselReviewLiveSheet::BriselReviewLiveSheet(QWidget* parent,
                                             BriselReviewLivePublisher& publisher,
                                             Actions actions)
    : QDialog(parent),
      publisher_(publisher),
      lead_(Labels::text(qtText(ReviewWording::sheetText))),
      code_(Labels::line("")),
      host_(Labels::text("", "small")),
      state_(Labels::text("", "strong")),
      updated_(Labels::text("", "small")),
      problem_(Labels::text("", "caution")),
      failure_(Labels::text("", "error")) {
    setWindowTitle("Present on iPad");
    setAttribute(Qt::WA_DeleteOnClose);
    resize(Theme::px(460), Theme::px(330));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::px(22), Theme::px(18), Theme::px(22), Theme::px(16));
    column->setSpacing(Theme::px(10));
    column->addWidget(Labels::text("Present on iPad", "cardTitle"));
    lead_->setTextFormat(Qt::MarkdownText);
    code_->setFont(Theme::fixedWidthFont(codeSize));
    code_->setStyleSheet(QString("font-size: %1px;").arg(Theme::px(codeSize)));
    code_->setAlignment(Qt::AlignCenter);
    host_->setAlignment(Qt::AlignCenter);
    state_->setAlignment(Qt::AlignCenter);
    updated_->setAlignment(Qt::AlignCenter);
    for (QLabel* label : {lead_, code_, host_, state_, updated_, problem_, failure_}) {
        column->addWidget(label);
    }
    column->addStretch(1);
    addButtons(*column, std::move(actions));
    changes_ = publisher_.observe([this] { refresh(); });
    refresh();
}

void BriselReviewLiveSheet::addButtons(QVBoxLayout& column, Actions actions) {
    auto* row = new QHBoxLayout;
    row->addWidget(Buttons::make("Export packet…", std::move(actions.onExportPacket)));
    update_ = Buttons::make(
        "Update packet",
        [this, onUpdatePacket = std::move(actions.onUpdatePacket)] { renew(onUpdatePacket); });
    update_->setToolTip("Offers the workspace as it stands now; the code stays");
    row->addWidget(update_);
    row->addStretch(1);
    stop_ = Buttons::make(
        qtText(ReviewWording::stop), [this] { close(); }, Buttons::Weight::primary);
    row->addWidget(stop_);
    column.addLayout(row);
}

void BriselReviewLiveSheet::renew(const std::function<bool()>& onUpdatePacket) {
    const QString now = QLocale::c().toString(QTime::currentTime(), "HH:mm:ss");
    updated_->setText(qtText(onUpdatePacket() ? ReviewWording::updated(utf8(now))
                                              : std::string(ReviewWording::notBuilt)));
}

void BriselReviewLiveSheet::done(int result) {
    changes_.reset();
    publisher_.stopPublishing();
    QDialog::done(result);
}

void BriselReviewLiveSheet::refresh() {
    const bool isOn = publisher_.isPublishing();
    const std::string code = publisher_.pairCode().value_or("");
    for (QWidget* each :
         std::initializer_list<QWidget*>{lead_, code_, host_, state_, updated_, update_}) {
        each->setVisible(isOn);
    }
    if (code_->text() != spelled(code)) {
        // Another start has a packet of its own.
        updated_->clear();
    }
    code_->setText(spelled(code));
    code_->setAccessibleName("Pair code " + spelled(code));
    host_->setText(qtText(publisher_.macHostName()));
    const int clients = publisher_.connectedClients();
    state_->setText(qtText(clients == 0 ? ReviewWording::waiting : ReviewWording::served(clients)));
    const std::optional<std::string> problem = publisher_.announcementProblem();
    problem_->setVisible(isOn && problem);
    problem_->setText(qtText(ReviewWording::notAnnounced(problem.value_or(""), publisher_.address(),
                                                         publisher_.port())));
    failure_->setVisible(publisher_.failure().has_value());
    failure_->setText(qtText(publisher_.failure().value_or("")));
    const QString label = isOn ? qtText(ReviewWording::stop) : QString("Close");
    stop_->setText(label);
    stop_->setAccessibleName(label);
}

}  // namespace sorvane
