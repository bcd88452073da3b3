#include "SorvaneCore/Import/Survey/PackageJson.h"

#include <algorithm>
#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::PackageJson {

namespace {

/// The shortest text that reads back, its exponent written out: "1000000000000000000000" for 1e+21.
std::string withoutExponent(std::string text) {
    const std::size_t mark = text.find('e');
    if (mark == text.npos) {
        return text;
    }
    const auto exponent =
        static_cast<std::int64_t>(NumberText::parse(text.substr(mark + 1)).value_or(0.0));
    const std::string sign = text.starts_with('-') ? "-" : "";
    std::string digits = text.substr(sign.size(), mark - sign.size());
    std::erase(digits, '.');
    // The mantissa has one digit before the point.
    const std::int64_t before = 1 + exponent;
    if (before <= 0) {
        return sign + "0." + std::string(static_cast<std::size_t>(-before), '0') + digits;
    }
    const auto wanted = static_cast<std::size_t>(before);
    if (wanted < digits.size()) {
        return sign + digits.insert(wanted, ".");
    }
    digits.resize(wanted, '0');
    return sign + digits;
}

std::string numberText(double number) {
    constexpr double plainIntegers = 1e15;
    return std::fabs(number) < plainIntegers && number == std::trunc(number)
               ? NumberText::integer(static_cast<std::int64_t>(number))
               : withoutExponent(NumberText::shortest(number));
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLongInteger(std::string_view number) {
    constexpr std::size_t fewestDigits = 19;
    const std::string_view digits = number.substr(number.starts_with('-') ? 1 : 0);
    return digits.size() >= fewestDigits && digits.front() != '0' &&
           std::ranges::all_of(digits, isDigit);
}

/// A document with its longest whole numbers as texts, as the parser takes none beyond 64 bits.
std::string withLongIntegersAsTexts(std::string_view json) {
    std::string result;
    bool isInsideText = false;
    for (std::size_t at = 0; at < json.size();) {
        if (!isInsideText && (json[at] == '-' || isDigit(json[at]))) {
            const std::size_t end = json.find_first_not_of("+-.0123456789Ee", at);
            const std::string_view number = json.substr(at, end - at);
            const std::string_view quote = isLongInteger(number) ? "\"" : "";
            result.append(quote).append(number).append(quote);
            at += number.size();
            continue;
        }
        if (isInsideText && json[at] == '\\') {
            result.push_back(json[at++]);
        } else if (json[at] == '"') {
            isInsideText = !isInsideText;
        }
        result.append(json.substr(at++, 1));
    }
    return result;
}

template <typename Value>
std::optional<Value> memberOf(const Object& object, std::string_view key) {
    Value value;
    return object.at_key(key).get(value) == simdjson::SUCCESS ? std::optional(value) : std::nullopt;
}

}  // namespace

std::optional<Document> Document::parse(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    bytes.remove_prefix(bytes.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    Document document;
    const auto parse = [&document](std::string_view json) {
        return document.parser_->parse(simdjson::padded_string(json)).get(document.root_);
    };
    simdjson::error_code error = parse(bytes);
    if (error == simdjson::NUMBER_ERROR) {
        error = parse(withLongIntegersAsTexts(bytes));
    }
    return error == simdjson::SUCCESS ? std::optional(std::move(document)) : std::nullopt;
}

std::optional<Element> member(const Object& object, std::string_view key) {
    return memberOf<Element>(object, key);
}

std::optional<Object> objectMember(const Object& object, std::string_view key) {
    return memberOf<Object>(object, key);
}

std::optional<Array> arrayMember(const Object& object, std::string_view key) {
    return memberOf<Array>(object, key);
}

std::optional<std::string> textMember(const Object& object, std::string_view key) {
    const std::optional<std::string_view> text = memberOf<std::string_view>(object, key);
    return text ? std::optional(std::string(*text)) : std::nullopt;
}

std::map<std::string, std::string> textsOf(const Object& object) {
    std::map<std::string, std::string> texts;
    for (const auto [key, value] : object) {
        if (value.is_string()) {
            texts[std::string(key)] = stringify(value);
        }
    }
    return texts;
}

std::string stringify(const Element& value) {
    using Type = simdjson::dom::element_type;
    switch (value.type()) {
        case Type::STRING:
            return std::string(value.get_string().value_unsafe());
        case Type::INT64:
            return NumberText::integer(value.get_int64().value_unsafe());
        case Type::DOUBLE:
            return numberText(value.get_double().value_unsafe());
        case Type::BOOL:
            return value.get_bool().value_unsafe() ? "true" : "false";
        case Type::NULL_VALUE:
            return {};
        case Type::UINT64:
        case Type::ARRAY:
        case Type::OBJECT:
            break;
    }
    return simdjson::minify(value);
}

}  // namespace sorvane::PackageJson
