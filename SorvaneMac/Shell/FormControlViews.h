#pragma once

#include <memory>

#include <QPointer>
#include <QWidget>

#include "SorvaneMac/Shell/FormView.h"

class QLabel;

namespace sorvane {

/// What the views of all kinds of control share: a widget of their own, and the control they show.
template <typename T>
class ControlViewOf : public ControlView {
public:
    ~ControlViewOf() override { delete root_; }
    QWidget* widget() override { return root_; }
    void update(const Control& control) override {
        control_ = std::get<T>(control);
        isUpdating_ = true;
        showControl();
        isUpdating_ = false;
    }

protected:
    virtual void showControl() = 0;
    const T& control() const { return control_; }
    /// Whether a change of the widgets comes from the form and not from the user.
    bool isUpdating() const { return isUpdating_; }
    void adopt(QWidget* root) { root_ = root; }

private:
    QPointer<QWidget> root_;
    T control_;
    bool isUpdating_ = false;
};

/// A label above a widget, which takes it as its accessible name.
QWidget* labelled(const QString& label, QWidget* field, QLabel** labelOut = nullptr);

/// Keeps a turn of the wheel from changing a value that the page only scrolls by.
void leaveWheelToPage(QWidget* field);

std::unique_ptr<ControlView> makeChoiceView(const ChoiceControl& control);
std::unique_ptr<ControlView> makeCheckListView(const CheckListControl& control);
std::unique_ptr<ControlView> makeNumberView(const NumberControl& control);

}  // namespace sorvane
