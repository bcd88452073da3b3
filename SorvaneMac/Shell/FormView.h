#pragma once

#include <memory>
#include <vector>

#include <QScrollArea>

#include "SorvaneMac/Screens/SetupForm.h"

class QVBoxLayout;

namespace sorvane {

/// The widgets of one control; they stay while the control only changes its value.
class ControlView {
public:
    virtual ~ControlView() = default;
    /// Whether these widgets can show the control.
    virtual bool suits(const Control& control) const = 0;
    virtual void update(const Control& control) = 0;
    virtual QWidget* widget() = 0;

    static std::unique_ptr<ControlView> make(const Control& control);
};

/// Draws a setup form; as long as its shape stays, so do the widgets, their focus and scroll.
class FormView final : public QScrollArea {
public:
    FormView();
    ~FormView() override;

    void show(const SetupForm& form);

private:
    std::unique_ptr<ControlView> take(const Control& control);
    bool standsInOrder(const std::vector<std::unique_ptr<ControlView>>& views) const;

    QVBoxLayout* column_;
    std::vector<std::unique_ptr<ControlView>> views_;
};

}  // namespace sorvane
