#pragma once

#include <string>
#include <string_view>

/// What the user is told where findings leave the desk.
namespace sorvane::ReviewWording {

inline constexpr std::string_view nothingToExport =
    "Nothing to export yet. Import data or stage at least one finding.";
inline constexpr std::string_view nothingToPresent =
    "Nothing to present yet. Import data or stage findings in the report builder.";
inline constexpr std::string_view notBuilt = "Could not build the presentation packet.";

inline constexpr std::string_view panelTitle = "Export to iPad";
inline constexpr std::string_view panelMessage =
    "Presentation packet for Kestrin Deck on iPad. Choose a name and folder: Desktop, iCloud, or "
    "anywhere you like.";
inline constexpr std::string_view panelButton = "Export";

inline constexpr std::string_view sheetText =
    "On the same Wi‑Fi, open **Brisel Review** on iPad → **Connect to Mac**. Your Mac should "
    "appear automatically. Enter the pair code below.";
inline constexpr std::string_view waiting = "Waiting for iPad…";
inline constexpr std::string_view stop = "Stop broadcasting";

std::string exportFailed(std::string_view why);
std::string finishing(std::string_view path);
std::string exported(std::string_view path);
/// How many clients gave the right code.
std::string served(int clients);
/// The packet was built anew, at a time of day.
std::string updated(std::string_view time);
/// Live review could not begin, or broke off.
std::string notListening(std::string_view why);
/// This machine does not announce itself; `host` is what to type instead.
std::string notAnnounced(std::string_view why, std::string_view host, int port);

}  // namespace sorvane::ReviewWording
