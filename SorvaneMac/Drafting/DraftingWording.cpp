#include "SorvaneMac/Drafting/DraftingWording.h"

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::DraftingWording {

std::string notEligible() {
    return "This Mac does not support Apple Intelligence.";
}

std::string turnedOff() {
    return "Turn on Apple Intelligence in System Settings to use Sorvane Intelligence.";
}

std::string notReady() {
    return "The on-device model is still downloading. Try again shortly.";
}

std::string unavailable(std::string_view reason) {
    return "Apple Intelligence is unavailable (" + std::string(reason) + ")";
}

std::string notThisMachine(std::string_view address) {
    return "\"" + std::string(address) + "\" is no address of this machine";
}

std::string nothingAnswers(std::string_view authority) {
    return "nothing answers at " + std::string(authority);
}

std::string answeredWith(int status, std::string_view said) {
    const std::string text = "the server answered with status " + NumberText::integer(status);
    return said.empty() ? text : text + ": " + std::string(said);
}

std::string notUnderstood() {
    return "the server's answer is not of the chat-completions form";
}

std::string noText() {
    return "The model gave no text.";
}

std::string brokeOff() {
    return "The server broke the draft off.";
}

std::string tookTooLong() {
    return "The server gave no sign of life for two minutes, so the draft was given up.";
}

std::string tooLong() {
    return "The model wrote far more than was asked for, so the draft was cut off.";
}

std::string remedy() {
    return "Here the model is that of a local server: name its address, such as "
           "http://127.0.0.1:11434/v1, and its model, and switch drafting on. Texts of your "
           "findings are sent to that address of this computer and nowhere else.";
}

std::string foreignNumbers(const std::vector<std::string>& numbers) {
    std::string listed;
    for (const std::string& each : numbers) {
        listed += (listed.empty() ? "" : ", ") + each;
    }
    return numbers.size() == 1 ? "This number is not in the findings: " + listed +
                                     ". Check it and its sign before you use the text."
                               : "These numbers are not in the findings: " + listed +
                                     ". Check them and their signs before you use the text.";
}

}  // namespace sorvane::DraftingWording
