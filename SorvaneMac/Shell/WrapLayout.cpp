#include "SorvaneMac/Shell/WrapLayout.h"

#include <algorithm>

namespace sorvane {

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
    for (const auto& item : items()) {
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

QSize WrapLayout::sizeHint() const {
    int width = 0;
    for (const auto& item : items()) {
        width += item->sizeHint().width() + spacing();
    }
    return {width, heightForWidth(width)};
}

QSize WrapLayout::minimumSize() const {
    QSize smallest;
    for (const auto& item : items()) {
        smallest = smallest.expandedTo(item->sizeHint());
    }
    return smallest;
}

}  // namespace sorvane
