#pragma once

#include <cstdint>
#include <iosfwd>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "SorvaneCore/Project/Json.h"

namespace sorvane {

/// Takes a JSON value piece by piece and keeps it in memory.
class JsonValueSink {
public:
    void null() { add(nullptr); }
    void boolean(bool value) { add(value); }
    void integer(std::int64_t value) { add(value); }
    void unsignedInteger(std::uint64_t value) { add(value); }
    void number(double value) { add(value); }
    void text(std::string_view value) { add(std::string(value)); }
    void beginObject() { open(Json::object()); }
    void key(std::string_view name) { keys_.back() = name; }
    void endObject() { close(); }
    void beginList() { open(Json::array()); }
    void endList() { close(); }

    /// The whole value; the sink is empty afterwards.
    Json take() { return std::move(whole_); }

private:
    void open(Json container);
    void close();
    void add(Json value);

    Json whole_;
    std::vector<Json> open_;
    /// The key that waits for its value, for each open container.
    std::vector<std::string> keys_;
};

/// Takes a JSON value piece by piece and writes it as text, without keeping it.
///
/// Bytes that are not UTF-8 come out as the replacement character.
class JsonTextSink {
public:
    explicit JsonTextSink(std::ostream& out) : out_(out) {}
    ~JsonTextSink() { flush(); }
    JsonTextSink(const JsonTextSink&) = delete;
    JsonTextSink& operator=(const JsonTextSink&) = delete;

    void null() { add("null"); }
    void boolean(bool value) { add(value ? "true" : "false"); }
    void integer(std::int64_t value);
    void unsignedInteger(std::uint64_t value);
    void number(double value);
    void text(std::string_view value);
    void beginObject() { open('{'); }
    void key(std::string_view name);
    void endObject() { close('}'); }
    void beginList() { open('['); }
    void endList() { close(']'); }

    void flush();

private:
    void open(char bracket);
    void close(char bracket);
    void add(std::string_view token);
    /// The comma that parts a value or a key from what stands before it.
    void separate();

    std::ostream& out_;
    std::string buffer_;
    bool needsComma_ = false;
};

}  // namespace sorvane
