#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SorvaneMac/Screens/ScreenContent.h"

namespace sorvane {

/// The result of a test in the shape that most have: figures, tables, charts, and what not to
/// claim; the same as a finding.
struct TestReport {
    /// Of the finding.
    std::string title;
    std::string sentence;
    std::vector<Tile> tiles;
    /// The first one is the finding's main table; each needs a title.
    std::vector<ReportTable> tables;
    /// Under the last table, such as a Bayes factor.
    std::optional<Passage> passage;
    /// Under the finding's main table, after what that says itself.
    std::string note;
    /// The first one becomes the finding's figure; may be empty.
    std::vector<Chart> charts;
    /// Belongs under the charts, which with it stand above the other tables.
    std::optional<ReportTable> chartTable;
    std::string figureCaption;
    /// What was checked of the test's assumptions.
    std::optional<Card> checks;
    /// The finding's caution.
    std::string caution;
    /// Further cautions of this result, which also stand in the note.
    std::vector<std::string> warnings;
};

/// Adds the tiles, cards and finding of the report.
void addReport(TestReport report, ScreenContent& content);

}  // namespace sorvane
