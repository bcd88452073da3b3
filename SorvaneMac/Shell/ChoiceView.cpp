#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QStyledItemDelegate>

#include "SorvaneMac/Shell/ElidedComboBox.h"
#include "SorvaneMac/Shell/FormControlViews.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// From this many choices on, a picker can be searched by typing.
constexpr std::size_t searchedFrom = 9;
constexpr int detailRole = Qt::UserRole;
/// What typing is compared with: the choice and its detail.
constexpr int searchRole = Qt::UserRole + 1;

/// Draws a choice and, quietly behind it, its detail.
class ChoiceDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter,
               const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        painter->save();
        const ThemeColors& colors = Theme::colors();
        if (option.state & (QStyle::State_Selected | QStyle::State_MouseOver)) {
            painter->fillRect(option.rect, colors.accentGround);
        }
        const QRect words = option.rect.adjusted(Theme::px(8), 0, -Theme::px(8), 0);
        painter->setFont(Theme::font(13));
        painter->setPen(colors.text);
        const QFontMetrics metrics(painter->font());
        const QString name =
            metrics.elidedText(index.data().toString(), Qt::ElideMiddle, words.width());
        painter->drawText(words, Qt::AlignVCenter, name);
        const QRect rest = words.adjusted(metrics.horizontalAdvance(name) + Theme::px(8), 0, 0, 0);
        if (rest.width() > Theme::px(20)) {
            painter->setFont(Theme::font(12));
            painter->setPen(colors.quietText);
            painter->drawText(rest, Qt::AlignVCenter,
                              painter->fontMetrics().elidedText(index.data(detailRole).toString(),
                                                                Qt::ElideRight, rest.width()));
        }
        painter->restore();
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {Theme::px(120), Theme::px(26)};
    }
};

/// Finds by choice or detail, and fills in the choice alone.
class ChoiceCompleter final : public QCompleter {
public:
    using QCompleter::QCompleter;
    QString pathFromIndex(const QModelIndex& index) const override {
        return index.data(Qt::DisplayRole).toString();
    }
};

/// Selects the whole text when the field is entered, so that typing starts a search; Escape brings
/// back what was chosen.
class SearchKeys final : public QObject {
public:
    explicit SearchKeys(QComboBox* box) : QObject(box), box_(box) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            // After the click that may have brought the focus, which sets the caret.
            QMetaObject::invokeMethod(box_->lineEdit(), "selectAll", Qt::QueuedConnection);
        } else if (event->type() == QEvent::KeyPress &&
                   static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
            box_->setEditText(box_->itemText(box_->currentIndex()));
            box_->lineEdit()->selectAll();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QComboBox* box_;
};

class ChoiceView final : public ControlViewOf<ChoiceControl> {
public:
    explicit ChoiceView(const ChoiceControl& first)
        : box_(new ElidedComboBox), isSearched_(first.choices.size() >= searchedFrom) {
        box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box_->setMinimumContentsLength(8);
        box_->setMaxVisibleItems(16);
        box_->view()->setItemDelegate(new ChoiceDelegate(box_));
        adopt(labelled(qtText(first.label), box_));
        leaveWheelToPage(box_);
        if (isSearched_) {
            makeSearchable();
        }
        QObject::connect(box_, &QComboBox::activated, box_, [this](int index) { choose(index); });
    }
    bool suits(const Control& next) const override {
        const auto* choice = std::get_if<ChoiceControl>(&next);
        return choice && choice->label == control().label &&
               isSearched_ == (choice->choices.size() >= searchedFrom);
    }

private:
    void makeSearchable() {
        box_->setEditable(true);
        box_->setInsertPolicy(QComboBox::NoInsert);
        auto* completer = new ChoiceCompleter(box_->model(), box_);
        completer->setCompletionRole(searchRole);
        completer->setFilterMode(Qt::MatchContains);
        completer->setCaseSensitivity(Qt::CaseInsensitive);
        completer->setMaxVisibleItems(box_->maxVisibleItems());
        box_->setCompleter(completer);
        completer->popup()->setItemDelegate(new ChoiceDelegate(completer));
        box_->lineEdit()->installEventFilter(new SearchKeys(box_));
        box_->lineEdit()->setAccessibleName(box_->accessibleName() + ", type to search");
        QObject::connect(box_->lineEdit(), &QLineEdit::editingFinished, box_, [this] { settle(); });
    }

    /// Takes what was typed as a choice where it is one or fits one alone; else it is no choice.
    void settle() {
        const QString typed = box_->currentText();
        int choice = box_->findText(typed, Qt::MatchFixedString);
        if (choice < 0 && !typed.isEmpty()) {
            const QModelIndexList fitting =
                box_->model()->match(box_->model()->index(0, 0), searchRole, typed, 2,
                                     Qt::MatchContains | Qt::MatchWrap);
            choice = fitting.size() == 1 ? fitting.front().row() : -1;
        }
        if (choice < 0 || choice == box_->currentIndex()) {
            box_->setEditText(box_->itemText(box_->currentIndex()));
            return;
        }
        box_->setCurrentIndex(choice);
        choose(choice);
    }

    void choose(int index) {
        if (isUpdating() || !control().set || index < 0) {
            return;
        }
        const int blanks = control().allowsBlank ? 1 : 0;
        if (index < blanks) {
            control().set(std::nullopt);
        } else {
            control().set(static_cast<std::size_t>(index - blanks));
        }
    }

    void fill() {
        box_->clear();
        if (control().allowsBlank) {
            box_->addItem(qtText(control().prompt.empty() ? "None" : control().prompt));
            box_->setItemData(0, box_->itemText(0), searchRole);
        }
        for (std::size_t at = 0; at < control().choices.size(); ++at) {
            const QString name = qtText(control().choices[at]);
            const QString detail =
                at < control().details.size() ? qtText(control().details[at]) : QString();
            const int row = box_->count();
            box_->addItem(name, detail);
            box_->setItemData(row, name + "\n" + detail, searchRole);
            if (!detail.isEmpty()) {
                box_->setItemData(row, name + "\n" + detail, Qt::ToolTipRole);
                box_->setItemData(row, name + ", " + detail, Qt::AccessibleTextRole);
            }
        }
    }

    void showControl() override {
        const bool isNew = box_->count() == 0 || control().choices != shown_.choices ||
                           control().details != shown_.details ||
                           control().prompt != shown_.prompt ||
                           control().allowsBlank != shown_.allowsBlank;
        if (isNew) {
            shown_ = control();
            fill();
        }
        const int blanks = control().allowsBlank ? 1 : 0;
        const int index =
            control().selected ? static_cast<int>(*control().selected) + blanks : blanks - 1;
        if (box_->currentIndex() != index) {
            box_->setCurrentIndex(index);
        }
        const QString prompt = qtText(control().prompt);
        if (isSearched_) {
            box_->lineEdit()->setPlaceholderText(prompt);
        } else {
            box_->setPlaceholderText(prompt);
        }
    }

    QComboBox* box_;
    bool isSearched_;
    /// The choices that stand in the box.
    ChoiceControl shown_;
};

}  // namespace

std::unique_ptr<ControlView> makeChoiceView(const ChoiceControl& control) {
    return std::make_unique<ChoiceView>(control);
}

}  // namespace sorvane
