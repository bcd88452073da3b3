#include "SorvaneMac/Drafting/ChatStream.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "SorvaneCore/Dataset/UnicodeText.h"
#include "SorvaneCore/Project/Json.h"
#include "SorvaneCore/Project/JsonValueEnd.h"
#include "SorvaneMac/Drafting/DraftingWording.h"

namespace sorvane {

namespace {

constexpr std::string_view dataField = "data:";
constexpr std::string_view endMark = "[DONE]";
constexpr std::size_t longestLine = 1 << 20;
/// Some ten pages; what is asked for is a paragraph.
constexpr std::size_t longestText = 1 << 15;
constexpr std::size_t longestMessage = 200;

/// Absent for text that is no JSON, or nests beyond all need.
std::optional<Json> parsed(std::string_view text) {
    JsonValueEnd end;
    end.find(text);
    if (end.isTooDeep()) {
        return std::nullopt;
    }
    Json json = Json::parse(text, nullptr, false);
    return json.is_discarded() ? std::nullopt : std::optional(std::move(json));
}

/// A member on the way down; null where there is none.
const Json& member(const Json& json, std::string_view name) {
    static const Json none;
    if (!json.is_object()) {
        return none;
    }
    const auto found = json.find(name);
    return found == json.end() ? none : *found;
}

/// The text that a choice brings, as a piece or whole; empty for none.
std::string_view contentOf(const Json& answer) {
    const Json& choices = member(answer, "choices");
    if (!choices.is_array() || choices.empty()) {
        return {};
    }
    for (const char* const form : {"delta", "message"}) {
        const Json& content = member(member(choices.front(), form), "content");
        if (content.is_string()) {
            return content.get_ref<const std::string&>();
        }
    }
    return {};
}

enum class Surrogate { none, leading, trailing };

/// Which half of a pair an escape such as "\ud83d" is.
Surrogate surrogate(std::string_view escape) {
    constexpr std::size_t length = 6;
    if (escape.size() < length || !escape.starts_with("\\u") ||
        (escape[2] != 'd' && escape[2] != 'D')) {
        return Surrogate::none;
    }
    constexpr std::string_view leading = "89abAB";
    constexpr std::string_view trailing = "cdefCDEF";
    return leading.find(escape[3]) != std::string_view::npos    ? Surrogate::leading
           : trailing.find(escape[3]) != std::string_view::npos ? Surrogate::trailing
                                                                : Surrogate::none;
}

/// Whether a choice gives a reason for its end. Some servers send an empty one with every piece.
bool hasFinished(const Json& answer) {
    const Json& choices = member(answer, "choices");
    if (!choices.is_array() || choices.empty()) {
        return false;
    }
    const Json& reason = member(choices.front(), "finish_reason");
    return reason.is_string() && !reason.get_ref<const std::string&>().empty();
}

/// The first so many bytes, less a character that would be cut in two.
std::string_view leading(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return text;
    }
    const auto continues = [text](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    while (most > 0 && continues(most)) {
        --most;
    }
    return text.substr(0, most);
}

std::string oneLine(std::string_view text) {
    std::string line(leading(UnicodeText::trimmed(text), longestMessage));
    std::ranges::replace_if(
        line, [](char each) { return static_cast<unsigned char>(each) < 0x20; }, ' ');
    return UnicodeText::repaired(line);
}

}  // namespace

std::string chatRequestBody(const DraftRequest& request, std::string_view model) {
    Json body = Json::object();
    body["model"] = std::string(model);
    body["messages"] = Json::array({{{"role", "system"}, {"content", request.instructions}},
                                    {{"role", "user"}, {"content", request.prompt}}});
    body["stream"] = true;
    return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool ChatStream::take(std::string_view bytes) {
    const std::size_t before = text_.size();
    while (!bytes.empty() && !isDone_ && !failure_) {
        const std::size_t end = bytes.find('\n');
        line_ += bytes.substr(0, end);
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
        if (line_.size() > longestLine) {
            fail(DraftingWording::tooLong());
        } else if (end != std::string_view::npos) {
            takeLine(line_);
            line_.clear();
        }
    }
    return text_.size() > before;
}

void ChatStream::finish() {
    if (!isDone_ && !failure_) {
        takeLine(line_);
    }
    line_.clear();
}

void ChatStream::takeLine(std::string_view line) {
    line = UnicodeText::trimmed(line);
    if (line.starts_with(dataField)) {
        const std::string_view data = UnicodeText::trimmed(line.substr(dataField.size()));
        if (data == endMark) {
            isDone_ = true;
        } else {
            takeJson(data);
        }
    } else if (line.starts_with('{')) {
        takeJson(line);
    }
}

std::string ChatStream::withWholePairs(std::string_view json) {
    constexpr std::string_view replacement = "\\ufffd";
    constexpr std::size_t escape = 6;
    std::string whole;
    whole.reserve(json.size());
    for (std::size_t at = 0; at < json.size();) {
        const std::string_view rest = json.substr(at);
        const Surrogate half = surrogate(rest);
        std::size_t length = rest.front() == '\\' ? 2 : 1;
        if (half == Surrogate::none) {
            whole += rest.substr(0, length);
        } else if (half == Surrogate::trailing) {
            length = escape;
            whole += half_.empty() ? replacement : half_;
            whole += half_.empty() ? std::string_view() : rest.substr(0, length);
            half_.clear();
        } else if (surrogate(rest.substr(escape)) == Surrogate::trailing) {
            length = 2 * escape;
            whole += rest.substr(0, length);
        } else {
            length = escape;
            half_ = rest.substr(0, length);
        }
        at += length;
    }
    return whole;
}

void ChatStream::takeJson(std::string_view json) {
    const std::optional<Json> answer = parsed(withWholePairs(json));
    if (!answer) {
        fail(DraftingWording::unavailable(DraftingWording::notUnderstood()));
        return;
    }
    if (!member(*answer, "error").is_null()) {
        fail(DraftingWording::unavailable(chatErrorMessage(json)));
        return;
    }
    const std::string_view content = contentOf(*answer);
    if (text_.size() + content.size() > longestText) {
        fail(DraftingWording::tooLong());
        return;
    }
    text_ += content;
    isDone_ = hasFinished(*answer);
}

std::string chatErrorMessage(std::string_view body) {
    const std::optional<Json> answer = parsed(body);
    if (!answer) {
        return "";
    }
    const Json& error = member(*answer, "error");
    for (const Json* each : {&member(error, "message"), &error, &member(*answer, "message")}) {
        if (each->is_string()) {
            return oneLine(each->get_ref<const std::string&>());
        }
    }
    return "";
}

}  // namespace sorvane
