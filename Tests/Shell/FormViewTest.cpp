#include "SorvaneMac/Shell/FormView.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>

#include <gtest/gtest.h>

#include "SorvaneMac/Shell/CheckListModel.h"
#include "SorvaneMac/Shell/ElidedComboBox.h"
#include "SorvaneMac/Shell/QtText.h"
#include "Tests/Shell/OffscreenApplication.h"

namespace sorvane {
namespace {

CheckListControl itemList(std::vector<CheckListControl::Item> items) {
    CheckListControl list;
    list.label = "Items";
    list.secondLabel = "Rev";
    list.items = std::move(items);
    return list;
}

SetupForm formOf(std::vector<Control> controls) {
    SetupForm form;
    form.controls = std::move(controls);
    return form;
}

void press(QWidget* widget, Qt::Key key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier, key == Qt::Key_Space ? " " : "");
    QCoreApplication::sendEvent(widget, &down);
}

TEST(FormView, KeepsItsWidgetsWhileTheShapeStays) {
    offscreenApplication();
    FormView form;
    const auto shape = [](const std::string& text, double value) {
        return formOf({TextControl{.label = "Name", .prompt = "", .text = text, .set = {}},
                       NumberControl{.label = "Share",
                                     .maximum = 1.0,
                                     .step = 0.1,
                                     .value = value,
                                     .valueText = "x",
                                     .isSlider = true,
                                     .set = {}}});
    };
    form.show(shape("one", 0.5));
    auto* edit = form.findChild<QLineEdit*>();
    auto* slider = form.findChild<QSlider*>();
    form.show(shape("two", 0.7));
    EXPECT_EQ(form.findChild<QLineEdit*>(), edit);
    EXPECT_EQ(edit->text(), "two");
    EXPECT_EQ(slider->value(), 7);
    EXPECT_EQ(edit->accessibleName(), "Name");
    form.show(formOf({HeadingControl{"Other"}}));
    EXPECT_EQ(form.findChild<QLineEdit*>(), nullptr);
}

TEST(FormView, TextOfSeveralLinesIsTypedAndReplaced) {
    offscreenApplication();
    FormView form;
    std::vector<std::string> told;
    TextControl model{.label = "Model",
                      .prompt = "",
                      .text = "f =~ a",
                      .set = [&told](const std::string& text) { told.push_back(text); },
                      .isMultiline = true};
    form.show(formOf({model}));
    auto* edit = form.findChild<QPlainTextEdit*>();
    EXPECT_EQ(edit->accessibleName(), "Model");
    model.text = "f =~ a\ng =~ b";
    form.show(formOf({model}));
    EXPECT_EQ(edit->toPlainText(), "f =~ a\ng =~ b");
    EXPECT_TRUE(told.empty());
    edit->textCursor().insertText("1");
    edit->insertPlainText(" + c");
    EXPECT_EQ(told, (std::vector<std::string>{"f =~ a\ng =~ b1", "f =~ a\ng =~ b1 + c"}));
    EXPECT_TRUE(edit->tabChangesFocus());
}

TEST(FormView, TellsOnlyWhatTheUserChanges) {
    offscreenApplication();
    FormView form;
    std::vector<double> told;
    NumberControl share{.label = "Share",
                        .minimum = 0.5,
                        .maximum = 1.0,
                        .step = 0.05,
                        .value = 0.8,
                        .valueText = "80%",
                        .isSlider = true,
                        .set = [&told](double value) {
                            told.push_back(value);
                        }};
    form.show(formOf({share}));
    share.value = 0.9;
    form.show(formOf({share}));
    EXPECT_TRUE(told.empty());
    form.findChild<QSlider*>()->setValue(4);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_DOUBLE_EQ(told.front(), 0.7);
}

TEST(FormView, StandsAtEveryTickOfASlider) {
    offscreenApplication();
    FormView form;
    for (int tick = 0; tick <= 10; ++tick) {
        form.show(formOf({NumberControl{.label = "Share",
                                        .minimum = 0.5,
                                        .maximum = 1.0,
                                        .step = 0.05,
                                        .value = (50 + 5 * tick) / 100.0,
                                        .valueText = "",
                                        .isSlider = true,
                                        .set = {}}}));
        EXPECT_EQ(form.findChild<QSlider*>()->value(), tick);
        EXPECT_EQ(form.findChild<QSlider*>()->maximum(), 10);
    }
}

TEST(FormView, ChecksItemsByKeyAndTurnsTheirSecondSwitch) {
    offscreenApplication();
    FormView form;
    CheckListControl list = itemList({{.name = "a", .detail = "", .second = false},
                                      {.name = "b", .detail = "", .isChecked = true}});
    std::vector<std::string> told;
    list.setChecked = [&told](const std::string& name, bool isOn) {
        told.push_back(name + (isOn ? " on" : " off"));
    };
    list.setSecond = [&told](const std::string& name, bool isOn) {
        told.push_back(name + (isOn ? " reversed" : " straight"));
    };
    form.show(formOf({list}));
    auto* view = form.findChild<QListView*>();
    view->setCurrentIndex(view->model()->index(0, 0));
    press(view, Qt::Key_Space);
    press(view, Qt::Key_Return);
    view->setCurrentIndex(view->model()->index(1, 0));
    press(view, Qt::Key_Space);
    press(view, Qt::Key_Return);
    EXPECT_EQ(told, (std::vector<std::string>{"a on", "a reversed", "b off"}));
}

TEST(FormView, SelectsAllThatTheFilterShows) {
    offscreenApplication();
    FormView form;
    std::vector<CheckListControl::Item> items;
    for (int at = 0; at < 12; ++at) {
        items.push_back({.name = (at < 3 ? "sa" : "mo") + std::to_string(at), .detail = ""});
    }
    CheckListControl list = itemList(std::move(items));
    std::vector<std::string> told;
    list.setAll = [&told](const std::vector<std::string>& names, bool) {
        told = names;
    };
    form.show(formOf({list}));
    form.findChild<QLineEdit*>()->setText("SA");
    for (QPushButton* button : form.findChildren<QPushButton*>()) {
        if (button->text() == "Select all shown") {
            button->click();
        }
    }
    EXPECT_EQ(told, (std::vector<std::string>{"sa0", "sa1", "sa2"}));
}

TEST(FormView, OffersTheBlankFirstAndSearchesLongLists) {
    offscreenApplication();
    FormView form;
    ChoiceControl choice;
    choice.label = "Group";
    choice.prompt = "All cases";
    choice.allowsBlank = true;
    for (int at = 0; at < 20; ++at) {
        choice.choices.push_back("variable" + std::to_string(at));
    }
    std::optional<std::optional<std::size_t>> told;
    choice.set = [&told](std::optional<std::size_t> index) {
        told = index;
    };
    form.show(formOf({choice}));
    auto* box = form.findChild<QComboBox*>();
    EXPECT_TRUE(box->isEditable());
    EXPECT_EQ(box->currentText(), "All cases");

    box->lineEdit()->setText("Variable7");
    emit box->lineEdit()->editingFinished();
    ASSERT_TRUE(told.has_value());
    EXPECT_EQ(*told, 7U);
    box->lineEdit()->setText("nothing");
    told.reset();
    emit box->lineEdit()->editingFinished();
    EXPECT_FALSE(told.has_value());
    EXPECT_EQ(box->currentText(), "variable7");
}

TEST(FormView, FindsAChoiceByItsDetail) {
    offscreenApplication();
    FormView form;
    ChoiceControl choice;
    choice.label = "Outcome";
    for (int at = 0; at < 500; ++at) {
        choice.choices.push_back("q" + std::to_string(at));
        choice.details.push_back(at == 321 ? "Outcome · Felt calm" : "Outcome");
    }
    std::optional<std::size_t> told;
    choice.set = [&told](std::optional<std::size_t> index) {
        told = index;
    };
    form.show(formOf({choice}));
    auto* box = form.findChild<QComboBox*>();
    box->lineEdit()->setText("CALM");
    emit box->lineEdit()->editingFinished();
    EXPECT_EQ(told, 321U);
    EXPECT_EQ(box->currentText(), "q321");
    // Many fit: that is no choice.
    box->lineEdit()->setText("outcome");
    emit box->lineEdit()->editingFinished();
    EXPECT_EQ(box->currentText(), "q321");
}

TEST(FormView, ChecksByKeyAllThatTheFilterShows) {
    offscreenApplication();
    FormView form;
    std::vector<CheckListControl::Item> items;
    for (int at = 0; at < 500; ++at) {
        items.push_back({.name = "q" + std::to_string(at), .detail = at < 7 ? "Calm" : "Tense"});
    }
    CheckListControl list = itemList(std::move(items));
    std::size_t told = 0;
    list.setAll = [&told](const std::vector<std::string>& names, bool isChecked) {
        told = isChecked ? names.size() : 0;
    };
    form.show(formOf({list}));
    form.findChild<QLineEdit*>()->setText("calm");
    QKeyEvent all(QEvent::KeyPress, Qt::Key_A, Qt::ControlModifier);
    QCoreApplication::sendEvent(form.findChild<QListView*>(), &all);
    EXPECT_EQ(told, 7U);
}

TEST(ElidedComboBox, SaysWhatToPickWhileNothingIsChosen) {
    offscreenApplication();
    ElidedComboBox box;
    box.addItem("age");
    box.setCurrentIndex(-1);
    const QImage blank = box.grab().toImage();
    box.setPlaceholderText("Pick a field");
    EXPECT_NE(box.grab().toImage(), blank);
}

}  // namespace
}  // namespace sorvane
