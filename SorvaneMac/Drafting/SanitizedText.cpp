#include "SorvaneMac/Drafting/SanitizedText.h"

#include <algorithm>
#include <array>
#include <optional>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::SanitizedText {

namespace {

constexpr std::string_view fence = "```";
constexpr std::array<std::string_view, 2> droppedStarts = {"tool_call", "i have called"};

/// Everything that Unicode has a line end with.
constexpr std::array<std::string_view, 7> lineBreaks = {"\r\n",   "\r",     "\v",    "\f",
                                                        "\u0085", "\u2028", "\u2029"};

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

/// The text with a line feed for each of its line breaks.
std::string withLineFeeds(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const auto* const found = std::ranges::find_if(
            lineBreaks, [text](std::string_view each) { return text.starts_with(each); });
        const bool isBreak = found != lineBreaks.end();
        plain += isBreak ? '\n' : text.front();
        text.remove_prefix(isBreak ? found->size() : 1);
    }
    return plain;
}

/// ASCII letters alone, so that every place in the text stays where it is.
std::string lowerCased(std::string_view text) {
    std::string lower(text);
    std::ranges::for_each(lower, [](char& each) {
        each = each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    });
    return lower;
}

/// Takes the lines of a text one by one and keeps those that are prose.
class Prose {
public:
    void take(std::string_view line) {
        const std::string lower = lowerCased(line);
        const std::optional<std::size_t> start = afterBlocks(lower);
        if (start && !isDropped(std::string_view(lower).substr(*start))) {
            kept_ += kept_.empty() ? "" : "\n";
            kept_ += line.substr(*start);
        }
    }
    bool isInBlock() const { return !awaited_.empty(); }
    std::string text() const { return std::string(UnicodeText::trimmed(kept_)); }

private:
    /// Where a line goes on behind the blocks that it begins with; absent where nothing is left.
    std::optional<std::size_t> afterBlocks(std::string_view lower) {
        std::size_t at = 0;
        while (true) {
            if (isInBlock()) {
                const std::size_t end = lower.find(awaited_, at);
                if (end == std::string_view::npos) {
                    return std::nullopt;
                }
                at = lower.find_first_not_of(" \t", end + awaited_.size());
                awaited_ = {};
                if (at == std::string_view::npos) {
                    return std::nullopt;
                }
            }
            const auto block = std::ranges::find_if(blocks, [&](const Block& each) {
                return lower.substr(at).starts_with(each.opening);
            });
            if (block == blocks.end()) {
                return at;
            }
            awaited_ = block->closing;
            at += block->opening.size();
        }
    }

    std::string kept_;
    /// What closes the block that is open; empty outside of one.
    std::string_view awaited_;
};

}  // namespace

std::string sanitized(std::string_view given) {
    const std::string plain = withLineFeeds(given);
    std::string_view text = plain;
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

std::string sanitizedSoFar(std::string_view given) {
    const std::string plain = withLineFeeds(given);
    const std::string_view text = plain;
    const std::size_t lineStart = text.rfind('\n') + 1;
    const std::string last = lowerCased(UnicodeText::trimmed(text.substr(lineStart)));
    return sanitized(mayBecomeDropped(last) ? text.substr(0, lineStart) : text);
}

}  // namespace sorvane::SanitizedText
