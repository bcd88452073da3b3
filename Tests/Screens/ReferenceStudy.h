#pragma once

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Screens/ScreenWorkplace.h"

namespace sorvane {

/// A workspace with one of the reference tables.
class ReferenceStudy : public ScreenWorkplace {
public:
    explicit ReferenceStudy(const std::string& table) {
        state.importData(std::filesystem::path(SORVANE_SOURCE_DIR "/Tests/Reference/data") / table);
        EXPECT_FALSE(state.data.importError.get());
    }
    /// Takes every column as an outcome, but for the groupings named.
    void assignAll(const std::set<std::string>& groupings) {
        for (const DataVariable& variable : std::vector(state.dataset().variables)) {
            assign({variable.name}, groupings.contains(variable.name) ? VariableKind::status
                                                                      : VariableKind::outcome);
        }
    }
    /// Fills the screen, runs it, and gives what it then shows.
    ScreenContent shown(StudioScreen screen, const Settings& settings) {
        screens.appear(screen);
        set(settings);
        const std::optional<std::string> refusal = screens.at(screen).run();
        EXPECT_FALSE(refusal) << *refusal;
        return screens.at(screen).content();
    }
    /// Stages what the screen shows first.
    void stage(const ScreenContent& content) { state.addToReport(content.findings.front().item); }
};

/// Null where there is no such card.
inline const Card* cardOf(const ScreenContent& content, const std::string& title) {
    const auto found = std::ranges::find(content.cards, title, &Card::title);
    return found == content.cards.end() ? nullptr : &*found;
}

/// Whether a caution on the screen holds this text.
inline bool warns(const ScreenContent& content, const std::string& part) {
    return std::ranges::any_of(content.cards, [&part](const Card& card) {
        return std::ranges::any_of(card.cautions, [&part](const std::string& caution) {
            return caution.find(part) != std::string::npos;
        });
    });
}

}  // namespace sorvane
