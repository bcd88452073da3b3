#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace sorvane {

/// The bytes of a document, in memory or on disk.
struct JsonSource {
    /// About how many there are.
    std::size_t size = 0;
    /// Fills `into` from a place of the document on; says how many bytes came, fewer than asked for
    /// at the end alone.
    std::function<std::size_t(std::size_t place, std::span<char> into)> read;

    /// The bytes must outlive the source.
    static JsonSource of(std::string_view bytes);
    /// Failure    no regular file that can be read -> std::system_error
    static JsonSource of(const std::filesystem::path& file);
};

/// Goes through a JSON document piece by piece, so that it is never in memory as a whole.
///
/// Finds where values end; whether what is inside them is JSON, their reader finds out.
///
/// Failure    text that breaks off or is no JSON, lists nested beyond all need ->
///            ProjectArchiveError
class JsonStream {
public:
    explicit JsonStream(JsonSource source);

    std::size_t size() const { return source_.size; }
    std::size_t place() const { return pieceStart_ + at_; }
    void goTo(std::size_t place);

    /// Whether the document begins so; to be asked before anything is passed over.
    bool startsWith(std::string_view text) { return atHand().starts_with(text); }
    /// The next byte that is not white space; it stays the next. '\0' at the end.
    char peek();
    /// Whether nothing but white space is left.
    bool isAtEnd();
    /// Passes the byte over; fails on any other.
    void take(char wanted);
    /// Passes the byte over if it is the next.
    bool takeIf(char wanted);
    /// Appends the text of the next value and passes it over.
    void appendValue(std::string& text) { passValue(&text); }
    void skipValue() { passValue(nullptr); }

    /// Says that the document is damaged at this place.
    [[noreturn]] void fail();

private:
    void passValue(std::string* text);
    void passScalar(std::string* text);
    /// The bytes at hand, more of them where all are used up; empty at the end.
    std::string_view atHand();
    void pass(std::size_t count, std::string* text);

    JsonSource source_;
    std::string piece_;
    std::size_t pieceStart_ = 0;
    std::size_t at_ = 0;
};

}  // namespace sorvane
