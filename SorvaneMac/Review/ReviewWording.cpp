#include "SorvaneMac/Review/ReviewWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::ReviewWording {

std::string exportFailed(std::string_view why) {
    return "Export failed: " + std::string(why);
}

std::string exported(std::string_view path) {
    return "Exported to " + std::string(path) + ". Open in Kestrin Deck on iPad.";
}

std::string finishing(std::string_view path) {
    return exported(path) + " Finishing plain-language…";
}

std::string served(int clients) {
    return clients == 1 ? "1 iPad has connected."
                        : NumberText::integer(clients) + " iPads have connected.";
}

std::string updated(std::string_view time) {
    return "The packet shows the workspace as of " + std::string(time) +
           ". An iPad that has it already connects again to get it.";
}

std::string notListening(std::string_view why) {
    return "Live review cannot be offered: " + std::string(why) +
           ". The packet can be exported as a file instead.";
}

std::string notAnnounced(std::string_view why, std::string_view host, int port) {
    return "This Mac does not appear by itself: " + std::string(why) +
           ". Where the viewer asks for an address, give " + std::string(host) + ", port " +
           NumberText::integer(port) + ".";
}

}  // namespace sorvane::ReviewWording
