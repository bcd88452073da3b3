#include <algorithm>
#include <cmath>

#include <QDoubleSpinBox>
#include <QLabel>
#include <QSlider>

#include "SorvaneMac/Shell/FormControlViews.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

namespace {

int decimalsFor(double step) {
    return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 6);
}

class SliderView final : public ControlViewOf<NumberControl> {
public:
    explicit SliderView(const NumberControl& first) : slider_(new QSlider(Qt::Horizontal)) {
        adopt(labelled(qtText(first.label), slider_, &label_));
        leaveWheelToPage(slider_);
        QObject::connect(slider_, &QSlider::valueChanged, slider_, [this](int tick) {
            if (!isUpdating() && control().set) {
                control().set(control().minimum + tick * control().step);
            }
        });
    }
    bool suits(const Control& next) const override {
        const auto* number = std::get_if<NumberControl>(&next);
        return number && number->isSlider && number->label == control().label;
    }

private:
    int tickOf(double value) const {
        return static_cast<int>(std::lround((value - control().minimum) / control().step));
    }
    void showControl() override {
        label_->setText(qtText(control().label + " · " + control().valueText));
        slider_->setRange(0, tickOf(control().maximum));
        slider_->setValue(tickOf(control().value));
        slider_->setAccessibleDescription(qtText(control().valueText));
    }

    QSlider* slider_;
    QLabel* label_ = nullptr;
};

class StepperView final : public ControlViewOf<NumberControl> {
public:
    explicit StepperView(const NumberControl& first) : box_(new QDoubleSpinBox) {
        adopt(labelled(qtText(first.label), box_));
        leaveWheelToPage(box_);
        box_->setLocale(QLocale::c());
        box_->setKeyboardTracking(false);
        QObject::connect(box_, &QDoubleSpinBox::valueChanged, box_, [this](double value) {
            if (!isUpdating() && control().set) {
                control().set(value);
            }
        });
    }
    bool suits(const Control& next) const override {
        const auto* number = std::get_if<NumberControl>(&next);
        return number && !number->isSlider && number->label == control().label;
    }

private:
    void showControl() override {
        box_->setDecimals(decimalsFor(control().step));
        box_->setRange(control().minimum, control().maximum);
        box_->setSingleStep(control().step);
        if (!box_->hasFocus() || box_->value() != control().value) {
            box_->setValue(control().value);
        }
    }

    QDoubleSpinBox* box_;
};

}  // namespace

std::unique_ptr<ControlView> makeNumberView(const NumberControl& control) {
    if (control.isSlider) {
        return std::make_unique<SliderView>(control);
    }
    return std::make_unique<StepperView>(control);
}

}  // namespace sorvane
