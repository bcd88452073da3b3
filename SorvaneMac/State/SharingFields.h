#pragma once

#include <string>

#include "SorvaneMac/State/Field.h"
#include "SorvaneMac/State/UserDefaults.h"

namespace sorvane {

/// How findings leave the desk; preferences, which outlive the session.
struct SharingFields {
    explicit SharingFields(FieldRegistry& fields);

    /// Whether a language model on this machine may be asked; off at first.
    Field<bool> intelligenceIsOn;
    /// Where its server listens, and which of its models is asked.
    Field<std::string> intelligenceAddress;
    Field<std::string> intelligenceModel;
    /// Whether a packet holds the leading rows of the table.
    Field<bool> packetHasPreview;

    /// Takes what was kept of a former session, and keeps each change from then on.
    [[nodiscard]] Subscription keepIn(FieldRegistry& fields, UserDefaults& defaults);
};

}  // namespace sorvane
