#include "SorvaneMac/Shell/FlowLayout.h"

#include <algorithm>

#include <QWidget>

namespace sorvane {

namespace {

bool isWide(const QLayoutItem& item) {
    const QWidget* widget = const_cast<QLayoutItem&>(item).widget();
    return widget && widget->property("wide").toBool();
}

}  // namespace

FlowLayout::FlowLayout(int spacing) {
    setSpacing(spacing);
    setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::addItem(QLayoutItem* item) {
    items_.emplace_back(item);
    invalidate();
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
    items_.erase(items_.begin() + index);
    invalidate();
    return item;
}

std::vector<FlowLayout::Row> FlowLayout::rowsAt(int width) const {
    std::vector<Row> rows;
    for (std::size_t at = 0; at < items_.size(); ++at) {
        QLayoutItem* first = items_[at].get();
        QLayoutItem* second = at + 1 < items_.size() ? items_[at + 1].get() : nullptr;
        if (second && !isWide(*first) && !isWide(*second)) {
            const int left = first->sizeHint().width();
            const int right = second->sizeHint().width();
            const int spare = width - spacing() - left - right;
            if (spare >= 0) {
                const int leftWidth = left + spare * left / std::max(left + right, 1);
                rows.push_back({{first, 0, leftWidth},
                                {second, leftWidth + spacing(), width - leftWidth - spacing()}});
                ++at;
                continue;
            }
        }
        rows.push_back({{first, 0, width}});
    }
    return rows;
}

int FlowLayout::rowHeight(const Row& row) {
    int height = 0;
    for (const Place& place : row) {
        height = std::max(height, place.item->hasHeightForWidth()
                                      ? place.item->heightForWidth(place.width)
                                      : place.item->sizeHint().height());
    }
    return height;
}

int FlowLayout::heightForWidth(int width) const {
    int height = 0;
    for (const Row& row : rowsAt(width)) {
        height += rowHeight(row) + spacing();
    }
    return std::max(height - spacing(), 0);
}

QSize FlowLayout::sizeHint() const {
    const QSize smallest = minimumSize();
    return {smallest.width(), heightForWidth(smallest.width())};
}

QSize FlowLayout::minimumSize() const {
    int width = 0;
    for (const auto& item : items_) {
        width = std::max(width, item->minimumSize().width());
    }
    return {width, 0};
}

void FlowLayout::setGeometry(const QRect& area) {
    QLayout::setGeometry(area);
    int top = area.top();
    for (const Row& row : rowsAt(area.width())) {
        const int height = rowHeight(row);
        for (const Place& place : row) {
            place.item->setGeometry({area.left() + place.left, top, place.width, height});
        }
        top += height + spacing();
    }
}

}  // namespace sorvane
