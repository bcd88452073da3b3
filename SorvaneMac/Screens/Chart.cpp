#include "SorvaneMac/Screens/Chart.h"

namespace sorvane {

Plot::Plot() = default;
Plot::Plot(const Plot& other) = default;
Plot::Plot(Plot&& other) noexcept = default;
Plot& Plot::operator=(const Plot& other) = default;
Plot& Plot::operator=(Plot&& other) noexcept = default;
Plot::~Plot() = default;

bool Plot::operator==(const Plot& other) const {
    return static_cast<const AnyPlot&>(*this) == static_cast<const AnyPlot&>(other);
}

}  // namespace sorvane
