#include "SorvaneMac/Drafting/SanitizedText.h"

#include <algorithm>
#include <array>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::SanitizedText {

namespace {

constexpr std::string_view fence = "```";
constexpr std::array<std::string_view, 2> droppedStarts = {"tool_call", "i have called"};

/// What models put around calls of tools and around what they say to themselves.
struct Block {
    std::string_view opening;
    std::string_view closing;
};
constexpr std::array<Block, 2> blocks = {
    {{"<tool_call>", "</tool_call>"}, {"<think>", "</think>"}}};

/// Whether the text stands at the start of something that is dropped, or the reverse.
bool mayBecomeDropped(std::string_view lower) {
    const auto begins = [lower](std::string_view start) {
        return start.starts_with(lower);
    };
    return begins(fence) || std::ranges::any_of(droppedStarts, begins) ||
           std::ranges::any_of(blocks, begins, &Block::opening);
}

bool isDropped(std::string_view lower) {
    return std::ranges::any_of(
        droppedStarts, [lower](std::string_view start) { return lower.starts_with(start); });
}

/// Takes the lines of a text one by one and keeps those that are prose.
class Prose {
public:
    void take(std::string_view line) {
        const std::string lower = UnicodeText::lowerCased(line);
        if (!awaited_.empty()) {
            const std::size_t end = lower.find(awaited_);
            if (end != std::string::npos) {
                const std::size_t after = end + awaited_.size();
                awaited_ = {};
                takeRest(line, after);
            }
            return;
        }
        const auto block = std::ranges::find_if(
            blocks, [&lower](const Block& each) { return lower.starts_with(each.opening); });
        if (block != blocks.end()) {
            awaited_ = block->closing;
            take(line.substr(block->opening.size()));
        } else if (!isDropped(lower)) {
            kept_ += kept_.empty() ? "" : "\n";
            kept_ += line;
        }
    }
    bool isInBlock() const { return !awaited_.empty(); }
    std::string text() const { return std::string(UnicodeText::trimmed(kept_)); }

private:
    void takeRest(std::string_view line, std::size_t from) {
        const std::string_view rest = UnicodeText::trimmed(line.substr(from));
        if (!rest.empty()) {
            take(rest);
        }
    }

    std::string kept_;
    /// What closes the block that is open; empty outside of one.
    std::string_view awaited_;
};

}  // namespace

std::string sanitized(std::string_view text) {
    Prose prose;
    bool isFenced = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = UnicodeText::trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (!prose.isInBlock() && line.starts_with(fence)) {
            // A fence that is closed on its own line holds nothing but that line.
            const bool isWhole = line.substr(fence.size()).find(fence) != std::string_view::npos;
            isFenced = isWhole ? isFenced : !isFenced;
        } else if (!isFenced) {
            prose.take(line);
        }
    }
    return prose.text();
}

std::string sanitizedSoFar(std::string_view text) {
    const std::size_t lineStart = text.rfind('\n') + 1;
    const std::string last = UnicodeText::lowerCased(UnicodeText::trimmed(text.substr(lineStart)));
    return sanitized(mayBecomeDropped(last) ? text.substr(0, lineStart) : text);
}

}  // namespace sorvane::SanitizedText
