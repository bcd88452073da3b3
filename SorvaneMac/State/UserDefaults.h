#pragma once

#include <map>
#include <string>
#include <string_view>

#include "SorvaneCore/Project/Json.h"

namespace sorvane {

/// Preferences of the user by name, which outlive a session where their owner keeps them.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    /// Null where nothing was kept.
    virtual Json value(std::string_view key) const = 0;
    virtual void set(std::string_view key, const Json& value) = 0;
};

/// Keeps them for one session; for scripts and tests.
class SessionDefaults final : public UserDefaults {
public:
    Json value(std::string_view key) const override;
    void set(std::string_view key, const Json& value) override;

private:
    /// As JSON text.
    std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace sorvane
