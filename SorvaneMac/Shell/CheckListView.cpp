#include <algorithm>

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/CheckListDelegate.h"
#include "SorvaneMac/Shell/CheckListModel.h"
#include "SorvaneMac/Shell/FormControlViews.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"
#include "SorvaneMac/Shell/WrapLayout.h"

namespace sorvane {

namespace {

constexpr std::size_t filteredFrom = 8;
constexpr int mostRows = 14;

/// A list in which Return and "select all" do something of their own.
class ItemList final : public QListView {
public:
    std::function<void(const QModelIndex&)> onReturn;
    std::function<void()> onSelectAll;

    void selectAll() override { onSelectAll(); }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isReturn && currentIndex().isValid()) {
            onReturn(currentIndex());
            return;
        }
        if (event->matches(QKeySequence::SelectAll)) {
            selectAll();
            return;
        }
        QListView::keyPressEvent(event);
    }
};

/// A filter from which the down key leads into the list.
class FilterEdit final : public QLineEdit {
public:
    explicit FilterEdit(QWidget& list) : list_(list) {}

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Down) {
            list_.setFocus(Qt::TabFocusReason);
            return;
        }
        QLineEdit::keyPressEvent(event);
    }

private:
    QWidget& list_;
};

class CheckListView final : public ControlViewOf<CheckListControl> {
public:
    explicit CheckListView(const CheckListControl& first)
        : label_(Labels::text("", "small")),
          list_(new ItemList),
          filter_(new FilterEdit(*list_)),
          selectAll_(shownButton("Select all shown", true)),
          selectNone_(shownButton("Clear shown", false)) {
        auto* root = new QWidget;
        auto* column = new QVBoxLayout(root);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(Theme::px(4));
        column->addWidget(label_);
        column->addWidget(filter_);
        column->addWidget(list_);
        auto* buttons = new WrapLayout(Theme::px(6));
        buttons->addWidget(selectAll_);
        buttons->addWidget(selectNone_);
        column->addLayout(buttons);
        adopt(root);
        prepareFilter(qtText(first.label));
        prepareList(first);
    }
    bool suits(const Control& next) const override {
        const auto* list = std::get_if<CheckListControl>(&next);
        // The label may count what is chosen, so it does not tell one list from another.
        return list && list->secondLabel == control().secondLabel;
    }

private:
    QPushButton* shownButton(const QString& label, bool isChecked) {
        return Buttons::make(
            label, [this, isChecked] { setShown(isChecked); }, Buttons::Weight::link);
    }

    void prepareFilter(const QString& label) {
        filter_->setPlaceholderText("Filter");
        filter_->setClearButtonEnabled(true);
        filter_->setAccessibleName("Filter " + label);
        QObject::connect(filter_, &QLineEdit::textChanged, filter_, [this](const QString& text) {
            proxy_.setFilterFixedString(text);
            fitHeight();
        });
    }

    void prepareList(const CheckListControl& first) {
        proxy_.setSourceModel(&model_);
        proxy_.setFilterCaseSensitivity(Qt::CaseInsensitive);
        proxy_.setFilterRole(CheckListModel::searchRole);
        list_->setModel(&proxy_);
        list_->setUniformItemSizes(true);
        list_->setMouseTracking(true);
        list_->setMinimumWidth(Theme::px(100));
        list_->setSelectionMode(QAbstractItemView::NoSelection);
        list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
        list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        list_->setAccessibleName(qtText(first.label));
        QString keys = "Space checks an item, Ctrl+A all that are shown.";
        if (!first.secondLabel.empty()) {
            keys += " Return turns " + qtText(first.secondLabel) + ".";
        }
        list_->setAccessibleDescription(keys);
        const auto turnSecond = [this](const QModelIndex& index) {
            model_.turnSecond(proxy_.mapToSource(index));
        };
        list_->onReturn = turnSecond;
        list_->onSelectAll = [this] {
            setShown(true);
        };
        delegate_ = std::make_unique<CheckListDelegate>(qtText(first.secondLabel), turnSecond);
        list_->setItemDelegate(delegate_.get());
    }

    void setShown(bool isChecked) {
        std::vector<std::string> names;
        for (int row = 0; row < proxy_.rowCount(); ++row) {
            names.push_back(utf8(proxy_.index(row, 0).data().toString()));
        }
        if (control().setAll) {
            control().setAll(names, isChecked);
            return;
        }
        const auto setChecked = control().setChecked;
        for (const std::string& name : names) {
            setChecked(name, isChecked);
        }
    }

    void fitHeight() {
        const int rows = std::clamp(proxy_.rowCount(), 1, mostRows);
        list_->setFixedHeight(rows * Theme::px(26) + 2 * list_->frameWidth() + 2);
    }

    /// The label, with the number of what is chosen where it does not say it itself.
    QString countedLabel() const {
        const QString label = qtText(control().label);
        if (label.contains("selected")) {
            return label;
        }
        const auto chosen =
            std::count_if(control().items.begin(), control().items.end(),
                          [](const CheckListControl::Item& item) { return item.isChecked; });
        return label + QString(" · %1 of %2 selected").arg(chosen).arg(control().items.size());
    }

    void showControl() override {
        model_.show(control());
        label_->setText(countedLabel());
        const bool isFiltered = control().items.size() >= filteredFrom;
        filter_->setVisible(isFiltered);
        if (!isFiltered) {
            filter_->clear();
        }
        for (QWidget* part : std::initializer_list<QWidget*>{list_, selectAll_, selectNone_}) {
            part->setVisible(!control().items.empty());
        }
        fitHeight();
    }

    QLabel* label_;
    ItemList* list_;
    QLineEdit* filter_;
    QPushButton* selectAll_;
    QPushButton* selectNone_;
    CheckListModel model_;
    QSortFilterProxyModel proxy_;
    std::unique_ptr<CheckListDelegate> delegate_;
};

}  // namespace

std::unique_ptr<ControlView> makeCheckListView(const CheckListControl& control) {
    return std::make_unique<CheckListView>(control);
}

}  // namespace sorvane
