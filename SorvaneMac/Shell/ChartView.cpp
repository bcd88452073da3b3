#include "SorvaneMac/Shell/ChartView.h"

#include <QAction>
#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>

#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Screens/ChartDescription.h"
#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/ChartDrawing.h"
#include "SorvaneMac/Shell/ChartImages.h"
#include "SorvaneMac/Shell/ChartSizes.h"
#include "SorvaneMac/Shell/FileSaving.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int smallestWidth = 260;
constexpr int longestName = 60;

/// A chart is laid out in units of the design and drawn in the scale that stands.
double scale() {
    return Theme::px(1000) / 1000.0;
}

QByteArray qtBytes(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

/// The chart's title without what file systems refuse.
std::string fileName(const Chart& chart) {
    static const QRegularExpression refused(R"([\\/:*?"<>|\s]+)");
    const QString title = leading(qtText(chart.title).replace(refused, " ").trimmed(), longestName);
    return utf8(title.isEmpty() ? QString("Chart") : title) + ".png";
}

}  // namespace

ChartView::ChartView(Chart chart) : chart_(std::move(chart)) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(chart_.title.empty() ? QString("Chart") : qtText(chart_.title));
    setAccessibleDescription(qtText(chartDescription(chart_)));
    offerActions();
    draw();
}

ChartView::~ChartView() = default;

QSize ChartView::sizeHint() const {
    return {Theme::px(ChartSizes::suitableWidth(chart_, ChartInk::screen().font)),
            Theme::px(ChartSizes::suitableHeight(chart_))};
}

QSize ChartView::minimumSizeHint() const {
    return {Theme::px(smallestWidth), sizeHint().height()};
}

void ChartView::offerActions() {
    QAction* copy = addAction("Copy picture", this, &ChartView::copyPicture);
    QAction* save = addAction("Save picture as…", this, &ChartView::savePicture);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    // The keyboard has the context menu and Edit ▸ Copy.
    actions_ = Buttons::make("⋯", {}, Buttons::Weight::tool);
    actions_->setParent(this);
    actions_->setFocusPolicy(Qt::NoFocus);
    actions_->setAccessibleName("Copy or save " + accessibleName());
    actions_->setToolTip("Copy or save the picture");
    connect(actions_, &QPushButton::clicked, this, [this, copy, save] {
        QMenu menu(this);
        menu.addActions({copy, save});
        menu.exec(actions_->mapToGlobal(actions_->rect().bottomLeft()));
    });
    actions_->hide();
}

void ChartView::copyPicture() const {
    auto* picture = new QMimeData;
    picture->setImageData(QImage::fromData(qtBytes(chartPng(chart_))));
    picture->setData("image/svg+xml", qtBytes(chartSvg(chart_)));
    QGuiApplication::clipboard()->setMimeData(picture);
}

void ChartView::draw() {
    drawing_ = std::make_unique<ChartDrawing>(chart_, ChartInk::screen());
    drawing_->resize((QSizeF(size()) / scale()).toSize());
}

void ChartView::resizeEvent(QResizeEvent*) {
    drawing_->resize((QSizeF(size()) / scale()).toSize());
    actions_->adjustSize();
    actions_->move(width() - actions_->width(), 0);
}

void ChartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.save();
    painter.scale(scale(), scale());
    drawing_->paint(painter);
    painter.restore();
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Theme::colors().accent, 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), 4, 4);
    }
}

void ChartView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    const bool isInk =
        event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange;
    if (isInk && drawing_) {
        draw();
        updateGeometry();
        update();
    }
}

void ChartView::enterEvent(QEnterEvent*) {
    actions_->show();
}

void ChartView::leaveEvent(QEvent*) {
    actions_->hide();
}

void ChartView::savePicture() {
    const auto file = FileDialogs::ofPlatform().save(
        this, {.title = "Save picture",
               .suggestedName = fileName(chart_),
               .filter = "PNG picture (*.png);;SVG drawing (*.svg)"});
    if (!file) {
        return;
    }
    const bool isDrawing = fromPath(file->extension()).compare(".svg", Qt::CaseInsensitive) == 0;
    saveFile(this, *file, isDrawing ? chartSvg(chart_) : chartPng(chart_));
}

}  // namespace sorvane
