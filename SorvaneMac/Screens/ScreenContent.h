#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"
#include "SorvaneMac/Screens/Chart.h"
#include "SorvaneMac/State/StudioScreen.h"

namespace sorvane {

/// A figure that people look for first.
struct Tile {
    std::string label;
    std::string value;
    std::string caption;

    bool operator==(const Tile&) const = default;
};

/// What stands in place of results while something is missing.
struct Gate {
    std::string title;
    /// What to do, in a few words; may be empty.
    std::string lead;
    std::string text;

    bool operator==(const Gate&) const = default;
};

/// A text under a label of its own.
struct Passage {
    std::string label;
    std::string text;
    bool isCaution = false;

    bool operator==(const Passage&) const = default;
};

enum class EvidenceTone { met, caution, violated, unavailable };

/// One line about an assumption, with its tone.
struct EvidenceLine {
    EvidenceTone tone = EvidenceTone::met;
    std::string title;
    std::string detail;
    /// What could be done, each under its name.
    std::vector<Passage> remedies;

    bool operator==(const EvidenceLine&) const = default;
};

/// A short value beside its name.
struct Fact {
    std::string label;
    std::string text;

    bool operator==(const Fact&) const = default;
};

/// A way from a card to a screen, which may be the card's own.
struct ScreenLink {
    std::string label;
    StudioScreen screen = StudioScreen::overview;
    /// Fields that are set on the way, each with its value as JSON text.
    std::vector<std::pair<std::string, std::string>> settings;
    /// Whether the screen's analysis runs at once.
    bool runs = false;

    bool operator==(const ScreenLink&) const = default;
};

/// One card of a screen, its parts in the order in which they are shown.
struct Card {
    std::string title;
    std::string subtitle;
    /// As the report will show them.
    std::vector<ReportTable> tables;
    std::vector<Chart> charts;
    std::vector<std::string> paragraphs;
    std::vector<Passage> passages;
    /// In two columns.
    std::vector<Fact> facts;
    /// A text plot, shown in a fixed-width face.
    std::string preformatted;
    std::vector<EvidenceLine> evidence;
    std::vector<std::string> cautions;
    /// At the card's foot.
    std::vector<ScreenLink> links;
    /// Takes the whole width even where two cards would fit side by side.
    bool wide = false;

    bool operator==(const Card&) const = default;
};

/// A result ready to be staged, and the chart that becomes its figure.
struct Finding {
    ReportItem item;
    std::optional<Chart> figure;

    bool operator==(const Finding&) const = default;
};

/// All that a screen shows, from top to bottom. Put together by the screen; a view only draws it.
struct ScreenContent {
    std::string title;
    std::string subtitle;
    std::optional<Gate> gate;
    std::vector<Tile> tiles;
    std::vector<Card> cards;
    /// What can be staged, an action row each; empty while there is nothing to stage.
    std::vector<Finding> findings;

    bool operator==(const ScreenContent&) const = default;
};

}  // namespace sorvane
