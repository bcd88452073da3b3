#include "SorvaneMac/Shell/ComputingOverlay.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CardFrame.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int progressSteps = 1000;

}  // namespace

ComputingOverlay::ComputingOverlay(QWidget* window, StudioState& state)
    : QWidget(window),
      state_(state),
      label_(Labels::line("", "cardTitle")),
      progress_(new QProgressBar),
      cancel_(Buttons::make("Cancel", [this] { state_.cancelComputing(); })) {
    auto* card = new CardFrame;
    card->body().setSpacing(Theme::px(12));
    card->body().addWidget(label_);
    progress_->setTextVisible(false);
    progress_->setFixedHeight(Theme::px(6));
    progress_->setMinimumWidth(Theme::px(280));
    progress_->setAccessibleName("Computing");
    card->body().addWidget(progress_);
    card->body().addWidget(cancel_, 0, Qt::AlignRight);
    auto* middle = new QGridLayout(this);
    middle->addWidget(card, 0, 0, Qt::AlignCenter);
    window->installEventFilter(this);
    hide();
}

void ComputingOverlay::refresh() {
    const bool isComputing = state_.isComputing.get();
    const std::optional<double> share = state_.computingProgress.get();
    label_->setText(qtText(state_.computingLabel.get()));
    // A range without width shows that something moves, but not how far it is.
    progress_->setRange(0, share ? progressSteps : 0);
    progress_->setValue(share ? static_cast<int>(*share * progressSteps) : -1);
    cancel_->setVisible(state_.computingCancellable.get());
    if (isComputing != isHidden()) {
        return;
    }
    setVisible(isComputing);
    if (isComputing) {
        setGeometry(parentWidget()->rect());
        raise();
        setFocus();
    }
}

bool ComputingOverlay::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return false;
}

void ComputingOverlay::paintEvent(QPaintEvent*) {
    QColor veil = Theme::colors().ground;
    veil.setAlphaF(0.7F);
    QPainter(this).fillRect(rect(), veil);
}

}  // namespace sorvane
