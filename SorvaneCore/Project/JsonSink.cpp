#include "SorvaneCore/Project/JsonSink.h"

#include <algorithm>
#include <ostream>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;

/// Whether a character stands for itself between quotes, whatever its neighbours.
bool isPlain(char c) {
    return c >= ' ' && c != '"' && c != '\\' && static_cast<unsigned char>(c) < 0x7F;
}

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
    appendQuoted(value);
    needsComma_ = true;
}

void JsonTextSink::key(std::string_view name) {
    separate();
    appendQuoted(name);
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

void JsonTextSink::appendQuoted(std::string_view value) {
    if (std::all_of(value.begin(), value.end(), isPlain)) {
        buffer_ += '"';
        buffer_ += value;
        buffer_ += '"';
    } else {
        buffer_ += Json(value).dump(-1, ' ', false, Json::error_handler_t::replace);
    }
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
