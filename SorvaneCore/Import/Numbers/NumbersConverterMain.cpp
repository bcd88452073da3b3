// Usage: sorvane-numbers SCRIPT. Reads a Numbers document from standard input and writes its first
// sheet as comma-separated text, or the text of the script's exception, to standard output.

#include <JavaScriptCore/JavaScript.h>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

#include "SorvaneCore/Import/Numbers/NumbersConverter.h"

namespace {

namespace Status = sorvane::NumbersConverterStatus;

constexpr const char* preparation = "var window = this; var global = this;";
constexpr const char* conversion =
    "(function () {\n"
    "    var wb = XLSX.read(svNumbersB64, { type: 'base64' });\n"
    "    var name = wb.SheetNames[0];\n"
    "    if (!name) return '';\n"
    "    return XLSX.utils.sheet_to_csv(wb.Sheets[name]);\n"
    "})();";

std::string standardInput() {
    std::string bytes;
    std::vector<char> buffer(65536);
    for (ssize_t got = 1; got > 0;) {
        got = read(STDIN_FILENO, buffer.data(), buffer.size());
        bytes.append(buffer.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
    }
    return bytes;
}

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        unsigned bits = 0;
        for (std::size_t i = at; i < at + 3; ++i) {
            bits = bits << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const bool isPadding = at + digit > bytes.size();
            text.push_back(isPadding ? '=' : digits[bits >> (18 - 6 * digit) & 0x3F]);
        }
    }
    return text;
}

/// A script's world and its last exception.
class Context {
public:
    Context() : context_(JSGlobalContextCreate(nullptr)) {}
    ~Context() {
        if (context_ != nullptr) {
            JSGlobalContextRelease(context_);
        }
    }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    bool exists() const { return context_ != nullptr; }
    /// The text of an exception that the last call threw.
    const std::optional<std::string>& exception() const { return exception_; }

    /// The text of what a script gives; absent when it throws or gives no value.
    std::optional<std::string> evaluate(const std::string& script) {
        exception_.reset();
        JSStringRef text = JSStringCreateWithUTF8CString(script.c_str());
        JSValueRef thrown = nullptr;
        JSValueRef value = JSEvaluateScript(context_, text, nullptr, nullptr, 1, &thrown);
        JSStringRelease(text);
        if (thrown != nullptr) {
            exception_ = textOf(thrown);
            return std::nullopt;
        }
        return value == nullptr ? std::nullopt : std::optional(textOf(value));
    }

    void set(const char* name, const std::string& text) {
        JSStringRef key = JSStringCreateWithUTF8CString(name);
        JSStringRef value = JSStringCreateWithUTF8CString(text.c_str());
        JSObjectSetProperty(context_, JSContextGetGlobalObject(context_), key,
                            JSValueMakeString(context_, value), kJSPropertyAttributeNone, nullptr);
        JSStringRelease(value);
        JSStringRelease(key);
    }

private:
    std::string textOf(JSValueRef value) const {
        JSStringRef copy = JSValueToStringCopy(context_, value, nullptr);
        if (copy == nullptr) {
            return {};
        }
        std::string text(JSStringGetMaximumUTF8CStringSize(copy), '\0');
        const std::size_t size = JSStringGetUTF8CString(copy, text.data(), text.size());
        JSStringRelease(copy);
        text.resize(size == 0 ? 0 : size - 1);
        return text;
    }

    JSGlobalContextRef context_;
    std::optional<std::string> exception_;
};

struct Outcome {
    int status = Status::unavailable;
    std::string output;
};

Outcome converted(const std::string& library, std::string_view document) {
    Context context;
    if (!context.exists()) {
        return {};
    }
    context.evaluate(preparation);
    if (!context.exception()) {
        context.evaluate(library);
    }
    if (context.exception()) {
        return {.status = Status::failed, .output = *context.exception()};
    }
    context.set("svNumbersB64", base64(document));
    std::optional<std::string> text = context.evaluate(conversion);
    if (context.exception()) {
        return {.status = Status::failed, .output = *context.exception()};
    }
    if (!text || *text == "undefined") {
        return {.status = Status::failed, .output = "no output"};
    }
    return {.status = Status::converted, .output = *std::move(text)};
}

std::optional<std::string> fileText(const char* path) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return file && !text.empty() ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace

int main(int count, char** words) {
    // A converter whose program has gone is of no use.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const std::optional<std::string> library = count == 2 ? fileText(words[1]) : std::nullopt;
    if (!library) {
        return Status::unavailable;
    }
    const Outcome outcome = converted(*library, standardInput());
    std::fwrite(outcome.output.data(), 1, outcome.output.size(), stdout);
    std::fflush(stdout);
    // The engine's own threads are not waited for.
    _exit(outcome.status);
}
