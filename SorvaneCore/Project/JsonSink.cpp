#include "SorvaneCore/Project/JsonSink.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <vector>

#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/JsonQuoting.h"

namespace sorvane {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 16;

}  // namespace

struct JsonValueSink::Containers {
    Json whole;
    std::vector<Json> open;
    /// The key that waits for its value, for each open container.
    std::vector<std::string> keys;

    void begin(Json container) {
        open.push_back(std::move(container));
        keys.emplace_back();
    }
};

JsonValueSink::JsonValueSink() : containers_(std::make_unique<Containers>()) {}

JsonValueSink::~JsonValueSink() = default;

void JsonValueSink::null() {
    add(nullptr);
}

void JsonValueSink::boolean(bool value) {
    add(value);
}

void JsonValueSink::integer(std::int64_t value) {
    add(value);
}

void JsonValueSink::unsignedInteger(std::uint64_t value) {
    add(value);
}

void JsonValueSink::number(double value) {
    add(value);
}

void JsonValueSink::text(std::string_view value) {
    add(std::string(value));
}

void JsonValueSink::beginObject() {
    containers_->begin(Json::object());
}

void JsonValueSink::key(std::string_view name) {
    containers_->keys.back() = name;
}

void JsonValueSink::endObject() {
    close();
}

void JsonValueSink::beginList() {
    containers_->begin(Json::array());
}

void JsonValueSink::endList() {
    close();
}

Json JsonValueSink::take() {
    return std::move(containers_->whole);
}

void JsonValueSink::close() {
    Json value = std::move(containers_->open.back());
    containers_->open.pop_back();
    containers_->keys.pop_back();
    add(std::move(value));
}

void JsonValueSink::add(Json value) {
    std::vector<Json>& open = containers_->open;
    if (open.empty()) {
        containers_->whole = std::move(value);
    } else if (open.back().is_object()) {
        open.back()[containers_->keys.back()] = std::move(value);
    } else {
        open.back().push_back(std::move(value));
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
