#include "SorvaneCore/Project/JsonSink.h"

#include <ostream>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonQuoting.h"

namespace sorvane {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;

}  // namespace

void JsonValueSink::open(Json container) {
    open_.push_back(std::move(container));
    keys_.emplace_back();
}

void JsonValueSink::close() {
    Json value = std::move(open_.back());
    open_.pop_back();
    keys_.pop_back();
    add(std::move(value));
}

void JsonValueSink::add(Json value) {
    if (open_.empty()) {
        whole_ = std::move(value);
    } else if (open_.back().is_object()) {
        open_.back()[keys_.back()] = std::move(value);
    } else {
        open_.back().push_back(std::move(value));
    }
}

void JsonTextSink::integer(std::int64_t value) {
    add(NumberText::integer(value));
}

void JsonTextSink::unsignedInteger(std::uint64_t value) {
    add(NumberText::unsignedInteger(value));
}

void JsonTextSink::number(double value) {
    std::string digits = NumberText::shortest(value);
    // A point keeps a whole number apart from an integer.
    if (digits.find_first_of(".e") == std::string::npos) {
        digits += ".0";
    }
    add(digits);
}

void JsonTextSink::text(std::string_view value) {
    separate();
    appendJsonString(buffer_, value);
    needsComma_ = true;
}

void JsonTextSink::key(std::string_view name) {
    separate();
    appendJsonString(buffer_, name);
    buffer_ += ':';
    needsComma_ = false;
}

void JsonTextSink::open(char bracket) {
    separate();
    buffer_ += bracket;
    needsComma_ = false;
}

void JsonTextSink::close(char bracket) {
    buffer_ += bracket;
    needsComma_ = true;
}

void JsonTextSink::add(std::string_view token) {
    separate();
    buffer_ += token;
    needsComma_ = true;
}

void JsonTextSink::separate() {
    if (needsComma_) {
        buffer_ += ',';
    }
    if (buffer_.size() >= bufferSize) {
        flush();
    }
}

void JsonTextSink::flush() {
    out_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
    buffer_.clear();
}

}  // namespace sorvane
