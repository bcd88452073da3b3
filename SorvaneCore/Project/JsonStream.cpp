#include "SorvaneCore/Project/JsonStream.h"

#include <algorithm>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonValueEnd.h"
#include "SorvaneCore/Project/ProjectArchive.h"

namespace sorvane {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
constexpr std::string_view whiteSpace = " \n\t\r";
constexpr std::string_view afterScalar = " \n\t\r,]}";

std::string byteText(std::size_t place) {
    return "byte " + NumberText::integer(static_cast<std::int64_t>(place));
}

}  // namespace

JsonStream::JsonStream(JsonSource source) : source_(std::move(source)) {}

void JsonStream::goTo(std::size_t place) {
    piece_.clear();
    pieceStart_ = place;
    at_ = 0;
}

std::string_view JsonStream::atHand() {
    if (at_ == piece_.size()) {
        pieceStart_ += at_;
        at_ = 0;
        piece_.resize(std::min(pieceSize, source_.size + 1));
        piece_.resize(source_.read(pieceStart_, piece_));
    }
    return std::string_view(piece_).substr(at_);
}

void JsonStream::pass(std::size_t count, std::string* text) {
    if (text) {
        text->append(piece_, at_, count);
    }
    at_ += count;
}

char JsonStream::peek() {
    for (std::string_view bytes = atHand(); !bytes.empty(); bytes = atHand()) {
        const std::size_t found = bytes.find_first_not_of(whiteSpace);
        if (found != std::string_view::npos) {
            at_ += found;
            return piece_[at_];
        }
        at_ = piece_.size();
    }
    return '\0';
}

bool JsonStream::isAtEnd() {
    return peek() == '\0' && atHand().empty();
}

bool JsonStream::takeIf(char wanted) {
    if (peek() != wanted || atHand().empty()) {
        return false;
    }
    ++at_;
    return true;
}

void JsonStream::take(char wanted) {
    if (!takeIf(wanted)) {
        fail();
    }
}

void JsonStream::passValue(std::string* text) {
    const char first = peek();
    if (first != '"' && first != '[' && first != '{') {
        passScalar(text);
        return;
    }
    JsonValueEnd end;
    while (!end.isFound()) {
        const std::string_view bytes = atHand();
        if (bytes.empty()) {
            fail();
        }
        pass(end.find(bytes), text);
        if (end.isTooDeep()) {
            throw ProjectArchiveError("it is nested too deeply at " + byteText(place()));
        }
    }
}

void JsonStream::passScalar(std::string* text) {
    const std::size_t begin = place();
    for (std::string_view bytes = atHand(); !bytes.empty(); bytes = atHand()) {
        const std::size_t end = bytes.find_first_of(afterScalar);
        pass(std::min(end, bytes.size()), text);
        if (end != std::string_view::npos) {
            break;
        }
    }
    if (place() == begin) {
        fail();
    }
}

void JsonStream::fail() {
    if (atHand().empty()) {
        throw ProjectArchiveError("it breaks off at " + byteText(place()));
    }
    throw ProjectArchiveError("what stands at " + byteText(place()) + " does not belong there");
}

}  // namespace sorvane
