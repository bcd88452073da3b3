#include "SorvaneMac/Shell/WrapLayout.h"

#include <algorithm>

namespace sorvane {

WrapLayout::WrapLayout(int spacing) {
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

WrapLayout::~WrapLayout() = default;

void WrapLayout::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
    invalidate();
}

QLayoutItem* WrapLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrapLayout::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
    items_.erase(items_.begin() + index);
    invalidate();
    return item;
}

std::vector<QRect> WrapLayout::places(int width) const {
    std::vector<QRect> found;
    std::size_t rowStart = 0;
    int left = 0;
    int top = 0;
    int rowHeight = 0;
    const auto endRow = [&] {
        for (; rowStart < found.size(); ++rowStart) {
            found[rowStart].moveTop(top + (rowHeight - found[rowStart].height()) / 2);
        }
        top += rowHeight + spacing();
        left = 0;
        rowHeight = 0;
    };
    for (const auto& item : items_) {
        const QSize size = item->isEmpty() ? QSize(0, 0) : item->sizeHint();
        if (left > 0 && left + size.width() > width) {
            endRow();
        }
        found.emplace_back(QPoint(left, top), size);
        left += size.width() + (size.isEmpty() ? 0 : spacing());
        rowHeight = std::max(rowHeight, size.height());
    }
    endRow();
    return found;
}

int WrapLayout::heightForWidth(int width) const {
    int height = 0;
    for (const QRect& place : places(width)) {
        height = std::max(height, place.y() + place.height());
    }
    return height;
}

QSize WrapLayout::sizeHint() const {
    int width = 0;
    for (const auto& item : items_) {
        width += item->sizeHint().width() + spacing();
    }
    return {width, heightForWidth(width)};
}

QSize WrapLayout::minimumSize() const {
    QSize smallest;
    for (const auto& item : items_) {
        smallest = smallest.expandedTo(item->sizeHint());
    }
    return smallest;
}

void WrapLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    const std::vector<QRect> found = places(area.width());
    for (std::size_t at = 0; at < found.size(); ++at) {
        items_[at]->setGeometry(found[at].translated(area.topLeft()));
    }
}

}  // namespace sorvane
