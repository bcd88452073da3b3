#pragma once

#include <QAbstractScrollArea>

#include "SorvaneMac/Shell/ApaTableLayout.h"

namespace sorvane {

/// A table on a card, as tall as it needs; it scrolls sideways where even its narrowest form does
/// not fit. The context menu copies it.
class ApaTableView final : public QAbstractScrollArea {
public:
    /// Input      name: for those who hear the window
    ApaTableView(ReportTable table, const QString& name);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    ReportTable table_;
    mutable ApaTableLayout layout_;
};

}  // namespace sorvane
