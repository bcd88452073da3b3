#include "SorvaneMac/Shell/ChartView.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPainter>

#include "SorvaneMac/Platform/FileDialogs.h"
#include "SorvaneMac/Screens/ChartDescription.h"
#include "SorvaneMac/Shell/ChartDrawing.h"
#include "SorvaneMac/Shell/ChartImages.h"
#include "SorvaneMac/Shell/ChartSizes.h"
#include "SorvaneMac/Shell/FileSaving.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int smallestWidth = 260;

QByteArray qtBytes(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

}  // namespace

ChartView::ChartView(Chart chart)
    : chart_(std::move(chart)),
      drawing_(std::make_unique<ChartDrawing>(chart_, ChartInk::screen())) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleName(chart_.title.empty() ? QString("Chart") : qtText(chart_.title));
    setAccessibleDescription(qtText(chartDescription(chart_)));
}

ChartView::~ChartView() = default;

QSize ChartView::sizeHint() const {
    return {Theme::px(ChartSizes::suitableWidth(chart_, Theme::faces(11.5))),
            Theme::px(ChartSizes::suitableHeight(chart_))};
}

QSize ChartView::minimumSizeHint() const {
    return {Theme::px(smallestWidth), sizeHint().height()};
}

void ChartView::copyPicture() const {
    auto* picture = new QMimeData;
    picture->setImageData(QImage::fromData(qtBytes(chartPng(chart_))));
    picture->setData("image/svg+xml", qtBytes(chartSvg(chart_)));
    QGuiApplication::clipboard()->setMimeData(picture);
}

void ChartView::resizeEvent(QResizeEvent*) {
    drawing_->resize(size());
}

void ChartView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawing_->paint(painter);
    if (hasFocus()) {
        painter.setPen(QPen(Theme::colors().accent, 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), 4, 4);
    }
}

void ChartView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addAction("Copy chart", this, &ChartView::copyPicture);
    menu.addAction("Save chart as…", this, &ChartView::savePicture);
    menu.exec(event->globalPos());
}

void ChartView::savePicture() {
    const auto file = FileDialogs::ofPlatform().save(
        this, {.title = "Save chart",
               .suggestedName = "Chart.png",
               .filter = "PNG picture (*.png);;SVG drawing (*.svg)"});
    if (!file) {
        return;
    }
    const bool isDrawing = file->extension() == ".svg";
    saveFile(this, *file, isDrawing ? chartSvg(chart_) : chartPng(chart_));
}

}  // namespace sorvane
