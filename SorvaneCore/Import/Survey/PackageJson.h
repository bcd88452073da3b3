#pragma once

#include <map>
#include <memory>
#include <optional>
#include <simdjson.h>
#include <string>
#include <string_view>

/// The JSON of survey packages.
namespace sorvane::PackageJson {

using Element = simdjson::dom::element;
using Object = simdjson::dom::object;
using Array = simdjson::dom::array;

/// A document that must be an object.
class Document {
public:
    /// Method     whole numbers beyond 64 bits stand as texts of their digits
    /// Failure    malformed, nested too deeply, no object -> absent
    static std::optional<Document> parse(std::string_view bytes);

    Object root() const { return root_; }

private:
    /// Elements point to it, so that it must not move.
    std::unique_ptr<simdjson::dom::parser> parser_ = std::make_unique<simdjson::dom::parser>();
    Object root_;
};

std::optional<Element> member(const Object& object, std::string_view key);
std::optional<Object> objectMember(const Object& object, std::string_view key);
std::optional<Array> arrayMember(const Object& object, std::string_view key);
std::optional<std::string> textMember(const Object& object, std::string_view key);
/// The members that are texts, by key.
std::map<std::string, std::string> textsOf(const Object& object);

/// The text of a cell: a text as it stands, a number in plain form without an exponent, "true" or "false", nothing for
/// null, and JSON for what is no single value.
std::string stringify(const Element& value);

}  // namespace sorvane::PackageJson
