#include "SorvaneCore/Import/Survey/PackageJson.h"

#include <cmath>

#include "SorvaneCore/Numerics/NumberText.h"

namespace sorvane::PackageJson {

namespace {

std::string numberText(double number) {
    constexpr double plainIntegers = 1e15;
    return std::fabs(number) < plainIntegers && number == std::trunc(number)
               ? NumberText::integer(static_cast<std::int64_t>(number))
               : NumberText::shortest(number);
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
    const simdjson::padded_string padded(bytes);
    return document.parser_->parse(padded).get(document.root_) == simdjson::SUCCESS
               ? std::optional(std::move(document))
               : std::nullopt;
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
