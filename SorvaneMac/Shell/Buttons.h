#pragma once

#include <functional>

#include <QPushButton>
#include <QString>

namespace sorvane::Buttons {

enum class Weight { ordinary, primary, link, tool };

QPushButton* make(const QString& label,
                  std::function<void()> press,
                  Weight weight = Weight::ordinary);

}  // namespace sorvane::Buttons
