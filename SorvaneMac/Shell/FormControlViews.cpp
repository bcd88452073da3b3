#include "SorvaneMac/Shell/FormControlViews.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "SorvaneMac/Shell/Buttons.h"
#include "SorvaneMac/Shell/Labels.h"
#include "SorvaneMac/Shell/QtText.h"
#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

class HeadingView final : public ControlViewOf<HeadingControl> {
public:
    HeadingView() : label_(Labels::text("", "heading")) {
        label_->setContentsMargins(0, Theme::px(6), 0, 0);
        adopt(label_);
    }
    bool suits(const Control& next) const override {
        const auto* heading = std::get_if<HeadingControl>(&next);
        return heading && heading->text == control().text;
    }

private:
    void showControl() override { Labels::show(*label_, qtText(control().text)); }

    QLabel* label_;
};

class NoteView final : public ControlViewOf<NoteControl> {
public:
    explicit NoteView(bool isWarning)
        : label_(Labels::text("", isWarning ? "warning" : "small")), isWarning_(isWarning) {
        adopt(label_);
    }
    bool suits(const Control& next) const override {
        const auto* note = std::get_if<NoteControl>(&next);
        return note && note->isWarning == isWarning_;
    }

private:
    void showControl() override { Labels::show(*label_, qtText(control().text)); }

    QLabel* label_;
    bool isWarning_;
};

class TextView final : public ControlViewOf<TextControl> {
public:
    explicit TextView(const TextControl& first) : edit_(new QLineEdit) {
        adopt(labelled(qtText(first.label), edit_));
        QObject::connect(edit_, &QLineEdit::textEdited, edit_, [this](const QString& text) {
            if (control().set) {
                control().set(utf8(text));
            }
        });
    }
    bool suits(const Control& next) const override {
        const auto* text = std::get_if<TextControl>(&next);
        return text && !text->isMultiline && text->label == control().label;
    }

private:
    void showControl() override {
        edit_->setPlaceholderText(qtText(control().prompt));
        const QString text = qtText(control().text);
        if (edit_->text() != text) {
            edit_->setText(text);
        }
    }

    QLineEdit* edit_;
};

class MultilineTextView final : public ControlViewOf<TextControl> {
public:
    explicit MultilineTextView(const TextControl& first) : edit_(new QPlainTextEdit) {
        adopt(labelled(qtText(first.label), edit_));
        edit_->setFont(Theme::fixedWidthFont(13));
        edit_->setTabChangesFocus(true);
        edit_->setMinimumHeight(shownLines * edit_->fontMetrics().lineSpacing());
        QObject::connect(edit_, &QPlainTextEdit::textChanged, edit_, [this] {
            if (!isUpdating() && control().set) {
                control().set(utf8(edit_->toPlainText()));
            }
        });
    }
    bool suits(const Control& next) const override {
        const auto* text = std::get_if<TextControl>(&next);
        return text && text->isMultiline && text->label == control().label;
    }

private:
    static constexpr int shownLines = 9;

    void showControl() override {
        edit_->setPlaceholderText(qtText(control().prompt));
        const QString text = qtText(control().text);
        if (edit_->toPlainText() != text) {
            edit_->setPlainText(text);
            edit_->moveCursor(QTextCursor::End);
        }
    }

    QPlainTextEdit* edit_;
};

class ToggleView final : public ControlViewOf<ToggleControl> {
public:
    ToggleView() : box_(new QCheckBox) {
        adopt(box_);
        QObject::connect(box_, &QCheckBox::toggled, box_, [this](bool isOn) {
            if (!isUpdating() && control().set) {
                control().set(isOn);
            }
        });
    }
    bool suits(const Control& next) const override {
        const auto* toggle = std::get_if<ToggleControl>(&next);
        return toggle && toggle->label == control().label;
    }

private:
    void showControl() override {
        box_->setText(qtText(control().label));
        box_->setAccessibleName(box_->text());
        box_->setChecked(control().isOn);
    }

    QCheckBox* box_;
};

class ButtonView final : public ControlViewOf<ButtonControl> {
public:
    explicit ButtonView(const ButtonControl& first)
        : button_(Buttons::make(
              qtText(first.label),
              [this] { press(); },
              first.isPrimary ? Buttons::Weight::primary : Buttons::Weight::ordinary)) {
        button_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        adopt(button_);
    }
    bool suits(const Control& next) const override {
        const auto* button = std::get_if<ButtonControl>(&next);
        return button && button->label == control().label &&
               button->isPrimary == control().isPrimary;
    }

private:
    void press() {
        // The press may make the form anew, and this view with it.
        if (const std::function<void()> action = control().press) {
            action();
        }
    }
    void showControl() override { button_->setEnabled(control().isEnabled); }

    QPushButton* button_;
};

/// Passes the wheel on while the field has no focus.
class WheelGuard final : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* field = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Wheel && field && !field->hasFocus()) {
            event->ignore();
            return true;
        }
        return false;
    }
};

struct ViewMaker {
    using Made = std::unique_ptr<ControlView>;

    Made operator()(const HeadingControl&) const { return std::make_unique<HeadingView>(); }
    Made operator()(const NoteControl& note) const {
        return std::make_unique<NoteView>(note.isWarning);
    }
    Made operator()(const TextControl& text) const {
        if (text.isMultiline) {
            return std::make_unique<MultilineTextView>(text);
        }
        return std::make_unique<TextView>(text);
    }
    Made operator()(const NumberControl& number) const { return makeNumberView(number); }
    Made operator()(const ToggleControl&) const { return std::make_unique<ToggleView>(); }
    Made operator()(const ChoiceControl& choice) const { return makeChoiceView(choice); }
    Made operator()(const CheckListControl& list) const { return makeCheckListView(list); }
    Made operator()(const ButtonControl& button) const {
        return std::make_unique<ButtonView>(button);
    }
};

}  // namespace

std::unique_ptr<ControlView> ControlView::make(const Control& control) {
    return std::visit(ViewMaker(), control);
}

QWidget* labelled(const QString& label, QWidget* field, QLabel** labelOut) {
    auto* both = new QWidget;
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::px(4));
    auto* name = Labels::text(label, "small");
    name->setBuddy(field);
    column->addWidget(name);
    column->addWidget(field);
    field->setAccessibleName(label);
    if (labelOut) {
        *labelOut = name;
    }
    return both;
}

void leaveWheelToPage(QWidget* field) {
    field->setFocusPolicy(Qt::StrongFocus);
    field->installEventFilter(new WheelGuard(field));
}

}  // namespace sorvane
