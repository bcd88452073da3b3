#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

#include "SorvaneCore/Project/Json.h"

namespace sorvane {

/// Takes a JSON value piece by piece and keeps it in memory.
class JsonValueSink {
public:
    JsonValueSink();
    ~JsonValueSink();
    JsonValueSink(const JsonValueSink&) = delete;
    JsonValueSink& operator=(const JsonValueSink&) = delete;

    void null();
    void boolean(bool value);
    void integer(std::int64_t value);
    void unsignedInteger(std::uint64_t value);
    void number(double value);
    void text(std::string_view value);
    void beginObject();
    void key(std::string_view name);
    void endObject();
    void beginList();
    void endList();

    /// The whole value; the sink is empty afterwards.
    Json take();

private:
    /// Kept apart, so that the JSON library stays out of whoever only writes records.
    struct Containers;

    void close();
    void add(Json value);

    std::unique_ptr<Containers> containers_;
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
