#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What the user is told of drafting.
namespace sorvane::DraftingWording {

/// There is no address or no model to ask.
std::string notEligible();
/// The preference is off.
std::string turnedOff();
/// The server is there but cannot answer yet.
std::string notReady();
std::string unavailable(std::string_view reason);

// Reasons that `unavailable` takes, and the draft that broke off.

std::string notThisMachine(std::string_view address);
std::string nothingAnswers(std::string_view authority);
std::string answeredWith(int status, std::string_view said);
std::string notUnderstood();
std::string noText();
std::string brokeOff();
std::string tookTooLong();
std::string tooLong();

/// What to do about drafting that is off or lacks a setting, beside the reason itself.
std::string remedy();
/// The flag under a draft that holds numbers of its own.
std::string foreignNumbers(const std::vector<std::string>& numbers);

inline constexpr std::string_view helpful = "Helpful?";
inline constexpr std::string_view rateHelpful = "Rate this response helpful";
inline constexpr std::string_view rateNotHelpful = "Rate this response not helpful";
inline constexpr std::string_view thanks = "Thanks for the feedback.";

}  // namespace sorvane::DraftingWording
