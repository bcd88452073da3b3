#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "SorvaneMac/Drafting/TextGenerator.h"

namespace sorvane {

/// The body of a chat-completions request that asks for the answer piece by piece.
std::string chatRequestBody(const DraftRequest& request, std::string_view model);

/// Reads the answer of a chat-completions server as it comes: events of lines "data: " and JSON,
/// "data: [DONE]" at the end. An answer that is one JSON object, as some servers give, is read too.
///
/// Holds no more than one line and the text; hostile bytes end the reading with `failure`.
class ChatStream {
public:
    /// Takes the next bytes, however they are cut.
    ///
    /// Returns    whether the text has grown
    bool take(std::string_view bytes);
    /// Takes the end of the bytes.
    void finish();

    /// The whole text so far.
    const std::string& text() const { return text_; }
    /// Whether the server said that the text is complete.
    bool isDone() const { return isDone_; }
    /// Why nothing more is read, as the user is told; absent where nothing is wrong.
    const std::optional<std::string>& failure() const { return failure_; }

private:
    void takeLine(std::string_view line);
    void takeJson(std::string_view json);
    /// The text of JSON in which no half of a character stands alone, as a server may cut it: what
    /// is left over at its end is kept for the next.
    std::string withWholePairs(std::string_view json);
    void fail(std::string why) { failure_ = std::move(why); }

    std::string line_;
    std::string text_;
    /// The first half of a character, as its escape, until the other comes.
    std::string half_;
    bool isDone_ = false;
    std::optional<std::string> failure_;
};

/// What an error answer says, on one line and not at length; empty where it says nothing.
std::string chatErrorMessage(std::string_view body);

}  // namespace sorvane
