#pragma once

#include <boost/describe/enum.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneMac/Report/ReportItem.h"

namespace sorvane {

/// What a user asks of a draft that stands.
enum class IntelligenceRefinement { shorter, simpler, formal };
BOOST_DESCRIBE_ENUM(IntelligenceRefinement, shorter, simpler, formal)

/// The button's label.
std::string_view displayName(IntelligenceRefinement refinement);
std::string_view instruction(IntelligenceRefinement refinement);

/// What a language model is told, word for word, and what it is given.
namespace DraftingInstructions {

using Refinement = std::optional<IntelligenceRefinement>;

/// To explain one result.
std::string interpret(Refinement refinement = std::nullopt);
/// To write one summary of several findings.
std::string summarize(Refinement refinement = std::nullopt);
/// To explain one result, with a request of our own that stands as a revision request does.
std::string interpretWith(std::string_view request);

/// A result as it goes in: its title, sentence and caution.
std::string resultText(const ReportItem& finding);
/// The results, parted by blank lines.
std::string findingsText(const std::vector<ReportItem>& findings);
/// The prompt of a summary.
std::string summaryPrompt(std::string_view findings);

}  // namespace DraftingInstructions

}  // namespace sorvane
