#include "SorvaneMac/Shell/FlowLayout.h"

#include <algorithm>

#include <QWidget>

namespace sorvane {

namespace {

bool isWide(QLayoutItem& item) {
    return item.widget() && item.widget()->property("wide").toBool();
}

int heightAt(const QLayoutItem& item, int width) {
    return item.hasHeightForWidth() ? item.heightForWidth(width) : item.sizeHint().height();
}

}  // namespace

int FlowLayout::leftWidth(std::size_t first, int width) const {
    if (first + 1 >= items().size() || isWide(*items()[first]) || isWide(*items()[first + 1])) {
        return 0;
    }
    const int left = items()[first]->sizeHint().width();
    const int right = items()[first + 1]->sizeHint().width();
    const int spare = width - spacing() - left - right;
    return spare >= 0 ? left + spare * left / std::max(left + right, 1) : 0;
}

std::vector<QRect> FlowLayout::places(int width) const {
    std::vector<QRect> found;
    int top = 0;
    while (found.size() < items().size()) {
        const std::size_t first = found.size();
        const int left = leftWidth(first, width);
        if (left == 0) {
            found.emplace_back(0, top, width, heightAt(*items()[first], width));
        } else {
            const int right = width - left - spacing();
            const int height =
                std::max(heightAt(*items()[first], left), heightAt(*items()[first + 1], right));
            found.emplace_back(0, top, left, height);
            found.emplace_back(left + spacing(), top, right, height);
        }
        top += found.back().height() + spacing();
    }
    return found;
}

QSize FlowLayout::sizeHint() const {
    const int width = minimumSize().width();
    return {width, heightForWidth(width)};
}

QSize FlowLayout::minimumSize() const {
    int width = 0;
    for (const auto& item : items()) {
        width = std::max(width, item->minimumSize().width());
    }
    return {width, 0};
}

}  // namespace sorvane
