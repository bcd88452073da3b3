#include "SorvaneMac/Shell/Buttons.h"

#include <utility>

#include <QVariant>

namespace sorvane::Buttons {

QPushButton* make(const QString& label, std::function<void()> press, Weight weight) {
    auto* button = new QPushButton(label);
    button->setAccessibleName(label);
    button->setAutoDefault(false);
    button->setProperty("primary", weight == Weight::primary);
    button->setProperty("link", weight == Weight::link);
    button->setProperty("tool", weight == Weight::tool);
    if (press) {
        QObject::connect(button, &QPushButton::clicked, button,
                         [press = std::move(press)] { press(); });
    }
    return button;
}

}  // namespace sorvane::Buttons
