#pragma once

#include "SorvaneMac/State/Field.h"

namespace sorvane {

/// Whether a selection that may stay blank can still be seeded: once for each table. A blank one
/// after that is a choice as well.
class OptionalSeed {
public:
    /// Input      `hasRun`: a field that a new table resets after the selection
    OptionalSeed(FieldRegistry& fields, const AnyField& selection, const Field<bool>& hasRun)
        : watch_(fields.observe([this, &selection, &hasRun](const AnyField& changed) {
              if (&changed == &selection) {
                  isOpen_ = false;
              } else if (&changed == &hasRun && !hasRun.get()) {
                  isOpen_ = true;
              }
          })) {}
    OptionalSeed(const OptionalSeed&) = delete;
    OptionalSeed& operator=(const OptionalSeed&) = delete;

    bool isOpen() const { return isOpen_; }

private:
    bool isOpen_ = true;
    Subscription watch_;
};

}  // namespace sorvane
