#pragma once

#include "SorvaneMac/Screens/Screen.h"

namespace sorvane {

/// A screen whose analysis is not in this version: it says what it will hold.
class LaterScreen final : public Screen {
public:
    explicit LaterScreen(StudioScreen id) : id_(id) {}

    StudioScreen id() const override { return id_; }
    SetupForm setup() override;
    ScreenContent content() const override;
    Guide guide() const override;
    std::optional<std::string> run() override;

private:
    StudioScreen id_;
};

}  // namespace sorvane
