#include "SorvaneMac/State/SharingFields.h"

#include <array>
#include <nlohmann/json.hpp>

#include "SorvaneMac/State/FieldJson.h"

namespace sorvane {

SharingFields::SharingFields(FieldRegistry& fields)
    : intelligenceIsOn(fields, "intelligenceIsOn", false, ResetRule::kept),
      intelligenceAddress(fields, "intelligenceAddress", "", ResetRule::kept),
      intelligenceModel(fields, "intelligenceModel", "", ResetRule::kept),
      packetHasPreview(fields, "packetHasPreview", false, ResetRule::kept) {}

Subscription SharingFields::keepIn(FieldRegistry& fields, UserDefaults& defaults) {
    const std::array<std::pair<AnyField*, std::string_view>, 4> kept = {
        {{&intelligenceIsOn, "sv.intelligence.isOn"},
         {&intelligenceAddress, "sv.intelligence.address"},
         {&intelligenceModel, "sv.intelligence.model"},
         {&packetHasPreview, "sv.review.packetHasPreview"}}};
    for (const auto& [field, key] : kept) {
        const Json value = defaults.value(key);
        try {
            if (!value.is_null()) {
                field->setJson(value);
            }
        } catch (const RecordJsonError&) {
            // Edited by hand into something else; the start value stands.
            field->reset();
        }
    }
    return fields.observe([kept, &defaults](const AnyField& changed) {
        for (const auto& [field, key] : kept) {
            if (field == &changed) {
                defaults.set(key, field->json());
            }
        }
    });
}

}  // namespace sorvane
