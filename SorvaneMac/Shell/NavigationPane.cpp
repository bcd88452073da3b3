#include "SorvaneMac/Shell/NavigationPane.h"

#include <algorithm>
#include <boost/describe/enumerators.hpp>
#include <boost/mp11/algorithm.hpp>

#include <QLabel>
#include <QListView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

constexpr int screenRole = Qt::UserRole;
constexpr int rowHeight = 26;
constexpr int headingHeight = 31;
constexpr int air = 9;
constexpr int scrollBarAndMargins = 46;

bool isHeading(const QModelIndex& index) {
    return !index.data(screenRole).isValid();
}

class NavigationDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex& index) const override {
        return {0, Theme::px(isHeading(index) ? headingHeight : rowHeight)};
    }
    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isHeading(index)) {
            paintHeading(*painter, option.rect, index.data().toString());
        } else {
            paintScreen(*painter, option, index.data().toString());
        }
        painter->restore();
    }

private:
    static void paintHeading(QPainter& painter, const QRect& row, const QString& text) {
        QFont font = Theme::font(11, QFont::DemiBold);
        font.setLetterSpacing(QFont::PercentageSpacing, 106);
        painter.setFont(font);
        painter.setPen(Theme::colors().quietText);
        painter.drawText(row.adjusted(Theme::px(air), 0, 0, -Theme::px(4)),
                         Qt::AlignLeft | Qt::AlignBottom, text.toUpper());
    }
    static void paintScreen(QPainter& painter,
                            const QStyleOptionViewItem& option,
                            const QString& text) {
        const ThemeColors& colors = Theme::colors();
        const bool isSelected = option.state & QStyle::State_Selected;
        const QRectF shape = QRectF(option.rect).adjusted(1, 1, -1, -1);
        if (isSelected || option.state & QStyle::State_MouseOver) {
            QColor ground = colors.accentGround;
            ground.setAlphaF(isSelected ? 1.0F : 0.5F);
            painter.setBrush(ground);
            painter.setPen(Qt::NoPen);
            painter.drawRoundedRect(shape, 6, 6);
        }
        if (option.state & QStyle::State_HasFocus) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(colors.accent, 1.5));
            painter.drawRoundedRect(shape, 6, 6);
        }
        const QFont font = Theme::font(13, isSelected ? QFont::DemiBold : QFont::Normal);
        const QRect words = option.rect.adjusted(Theme::px(air + 2), 0, -Theme::px(4), 0);
        painter.setFont(font);
        painter.setPen(isSelected ? colors.accent : colors.text);
        painter.drawText(words, Qt::AlignVCenter,
                         QFontMetrics(font).elidedText(text, Qt::ElideRight, words.width()));
    }
};

/// Keeps the chosen screen in sight when the list changes its height.
class ScreenList final : public QListView {
protected:
    void resizeEvent(QResizeEvent* event) override {
        QListView::resizeEvent(event);
        scrollTo(currentIndex());
    }
};

}  // namespace

NavigationPane::NavigationPane(std::function<void(StudioScreen)> choose)
    : choose_(std::move(choose)),
      list_(new ScreenList),
      name_(Labels::text("", "strong")),
      details_(Labels::text("", "small")) {
    setProperty("sidebar", true);
    setAttribute(Qt::WA_StyledBackground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::px(8), Theme::px(12), Theme::px(8), 0);
    column->setSpacing(Theme::px(1));
    for (QLabel* label : {name_, details_}) {
        label->setContentsMargins(Theme::px(air), 0, Theme::px(4), 0);
        column->addWidget(label);
    }
    column->addSpacing(Theme::px(8));
    column->addWidget(list_, 1);

    list_->setProperty("navigation", true);
    list_->setAccessibleName("Screens");
    list_->setItemDelegate(new NavigationDelegate(list_));
    list_->setMouseTracking(true);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    fill();
    list_->setModel(&model_);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid() && !isHeading(current)) {
                    choose_(static_cast<StudioScreen>(current.data(screenRole).toInt()));
                }
            });
}

void NavigationPane::fill() {
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<StudioSection>>(
        [this](auto enumerator) {
            auto* heading = new QStandardItem(qtText(displayName(enumerator.value)));
            heading->setFlags(Qt::NoItemFlags);
            model_.appendRow(heading);
            for (const StudioScreen screen : allStudioScreens()) {
                if (section(screen) == enumerator.value) {
                    auto* item = new QStandardItem(qtText(title(screen)));
                    item->setData(static_cast<int>(screen), screenRole);
                    item->setToolTip(item->text());
                    model_.appendRow(item);
                }
            }
        });
}

void NavigationPane::showDataset(const QString& name, const QString& details) {
    Labels::show(*name_, name);
    details_->setText(details);
}

void NavigationPane::select(StudioScreen screen) {
    for (int row = 0; row < model_.rowCount(); ++row) {
        const QModelIndex index = model_.index(row, 0);
        const bool isScreen =
            !isHeading(index) && index.data(screenRole).toInt() == static_cast<int>(screen);
        if (isScreen && list_->currentIndex() != index) {
            list_->setCurrentIndex(index);
        }
    }
}

int NavigationPane::suitableWidth() const {
    const QFontMetrics metrics(Theme::font(13, QFont::DemiBold));
    int widest = 0;
    for (int row = 0; row < model_.rowCount(); ++row) {
        widest = std::max(widest, metrics.horizontalAdvance(model_.item(row)->text()));
    }
    return widest + Theme::px(scrollBarAndMargins);
}

void NavigationPane::takeFocus() {
    list_->setFocus(Qt::ShortcutFocusReason);
}

}  // namespace sorvane
