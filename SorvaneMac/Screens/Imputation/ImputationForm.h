#pragma once

#include "SorvaneMac/Screens/Imputation/ImputationFields.h"
#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// Fills in missing numbers, in several copies or in one, and pools an analysis over the copies.
class ImputationForm final : public PrepareForm {
public:
    ImputationForm(StudioState& state, ImputationFields& fields) : state_(state), fields_(fields) {}

    void seed() override;
    void addTo(SetupForm& form) override;
    std::optional<Gate> gate() const override;
    void run() override;
    void showPreview(ScreenContent& content) const override;
    Json result() const override;
    Guide guide() const override;

private:
    bool isMultiple() const { return fields_.impMethod.get() == "mice"; }
    void addCopies(SetupForm& form);

    StudioState& state_;
    ImputationFields& fields_;
};

}  // namespace sorvane
