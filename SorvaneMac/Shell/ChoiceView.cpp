#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>

#include "SorvaneMac/Shell/FormControlViews.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

/// From this many choices on, a picker can be searched by typing.
constexpr std::size_t searchedFrom = 9;

class ChoiceView final : public ControlViewOf<ChoiceControl> {
public:
    explicit ChoiceView(const ChoiceControl& first)
        : box_(new QComboBox), isSearched_(first.choices.size() >= searchedFrom) {
        box_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box_->setMinimumContentsLength(8);
        box_->setMaxVisibleItems(16);
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
        box_->completer()->setFilterMode(Qt::MatchContains);
        box_->completer()->setCompletionMode(QCompleter::PopupCompletion);
        box_->completer()->setCaseSensitivity(Qt::CaseInsensitive);
        box_->lineEdit()->setAccessibleName(box_->accessibleName() + ", type to search");
        // What was typed and not chosen is no choice.
        QObject::connect(box_->lineEdit(), &QLineEdit::editingFinished, box_, [this] {
            const int typed = box_->findText(box_->currentText(), Qt::MatchFixedString);
            if (typed >= 0 && typed != box_->currentIndex()) {
                box_->setCurrentIndex(typed);
                choose(typed);
            } else if (typed < 0) {
                box_->setEditText(box_->itemText(box_->currentIndex()));
            }
        });
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

    QStringList wantedTexts() const {
        QStringList texts;
        if (control().allowsBlank) {
            texts << qtText(control().prompt.empty() ? "None" : control().prompt);
        }
        for (const std::string& choice : control().choices) {
            texts << qtText(choice);
        }
        return texts;
    }

    void showControl() override {
        const QStringList texts = wantedTexts();
        if (texts != texts_) {
            texts_ = texts;
            box_->clear();
            box_->addItems(texts);
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
    QStringList texts_;
};

}  // namespace

std::unique_ptr<ControlView> makeChoiceView(const ChoiceControl& control) {
    return std::make_unique<ChoiceView>(control);
}

}  // namespace sorvane
