#include "SorvaneMac/Platform/SettingsDefaults.h"

#include <nlohmann/json.hpp>

#include <QSettings>

namespace sorvane {

namespace {

class SettingsDefaults final : public UserDefaults {
public:
    explicit SettingsDefaults(std::unique_ptr<QSettings> settings)
        : settings_(std::move(settings)) {}

    Json value(std::string_view key) const override {
        const std::string text = settings_->value(name(key)).toString().toStdString();
        // A value that is not JSON was not written here and counts as none.
        const Json json = Json::parse(text, nullptr, false);
        return json.is_discarded() ? Json() : json;
    }
    void set(std::string_view key, const Json& value) override {
        settings_->setValue(name(key), QString::fromStdString(value.dump(
                                           -1, ' ', false, Json::error_handler_t::replace)));
    }

private:
    static QString name(std::string_view key) {
        return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
    }

    std::unique_ptr<QSettings> settings_;
};

}  // namespace

std::unique_ptr<UserDefaults> settingsDefaults(const std::string& file) {
    return std::make_unique<SettingsDefaults>(
        file.empty()
            ? std::make_unique<QSettings>("Sorvane", "Sorvane")
            : std::make_unique<QSettings>(QString::fromStdString(file), QSettings::IniFormat));
}

}  // namespace sorvane
