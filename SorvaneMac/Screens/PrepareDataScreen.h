#pragma once

#include <map>
#include <memory>

#include "SorvaneMac/Screens/PrepareForm.h"
#include "SorvaneMac/Screens/ScreenFields.h"
#include "SorvaneMac/State/StudioState.h"

namespace sorvane {

/// New and changed columns, one form at a time.
class PrepareDataScreen final : public Screen {
public:
    PrepareDataScreen(StudioState& state, ScreenFields& fields);

    StudioScreen id() const override { return StudioScreen::dataPrep; }
    void seed() override;
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override { return open().guide(); }
    std::optional<std::string> run() override;
    Json result() const override;

private:
    PrepareForm& open() const { return *forms_.at(fields_.prepareSection.get()); }
    /// What keeps the open form from running.
    std::optional<Gate> gate() const;

    StudioState& state_;
    PrepareDataFields& fields_;
    std::map<PrepareSection, std::unique_ptr<PrepareForm>> forms_;
};

}  // namespace sorvane
