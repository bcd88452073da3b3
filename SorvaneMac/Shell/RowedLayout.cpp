#include "SorvaneMac/Shell/RowedLayout.h"

#include <algorithm>

namespace sorvane {

RowedLayout::RowedLayout(int spacing) {
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

RowedLayout::~RowedLayout() = default;

void RowedLayout::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
    invalidate();
}

QLayoutItem* RowedLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* RowedLayout::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
    items_.erase(items_.begin() + index);
    invalidate();
    return item;
}

int RowedLayout::heightForWidth(int width) const {
    int height = 0;
    for (const QRect& place : places(width)) {
        height = std::max(height, place.y() + place.height());
    }
    return height;
}

void RowedLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    const std::vector<QRect> found = places(area.width());
    for (std::size_t at = 0; at < found.size(); ++at) {
        items_[at]->setGeometry(found[at].translated(area.topLeft()));
    }
}

}  // namespace sorvane
