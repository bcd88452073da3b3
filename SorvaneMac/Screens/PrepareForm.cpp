#include "SorvaneMac/Screens/PrepareForm.h"

#include <nlohmann/json.hpp>

namespace sorvane {

Json PrepareForm::result() const {
    return nullptr;
}

}  // namespace sorvane
