#include "SorvaneMac/State/UserDefaults.h"

#include <nlohmann/json.hpp>

namespace sorvane {

Json SessionDefaults::value(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? Json() : Json::parse(found->second);
}

void SessionDefaults::set(std::string_view key, const Json& value) {
    values_.insert_or_assign(std::string(key),
                             value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

}  // namespace sorvane
