#pragma once

#include <boost/describe/enum_to_string.hpp>
#include <boost/describe/enumerators.hpp>
#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"

/// The JSON form of every record: an object with the field names as keys in the order of the
/// fields, absent optional fields left out.
///
/// A number that is not finite is the text "nan", "inf" or "-inf"; an enumeration is its raw value;
/// bytes are base64; an identifier is its text.
namespace sorvane {

using Json = nlohmann::ordered_json;

/// JSON that does not have the form of the record asked for; the text says where.
class RecordJsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    /// The same error, seen from the record or list that holds the place.
    RecordJsonError within(const std::string& place) const;
};

/// Specialised for a type whose JSON form is not that of a plain record.
template <typename T>
struct JsonForm;

template <typename T>
Json toJson(const T& value);
/// Throws RecordJsonError when the JSON does not have the form of `T`.
template <typename T>
T fromJson(const Json& json);

namespace record_json {

std::string base64(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> bytesOfBase64(const std::string& text);
double numberOf(const Json& json);
[[noreturn]] void failWanting(std::string_view what);

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <typename T>
concept HasOwnForm = requires(const T& value) {
    JsonForm<T>::to(value);
};
template <typename T>
concept HasRawValue = requires(T value) {
    { rawValue(value) } -> std::convertible_to<std::string_view>;
};
template <typename T>
concept IsRecord = boost::describe::has_describe_members<T>::value && !std::is_union_v<T>;
template <typename T>
concept IsMap = requires {
    typename T::mapped_type;
};
template <typename T>
concept IsText = std::convertible_to<T, std::string_view>;
template <typename T>
concept IsList = requires(const T& value) {
    value.size();
    value[std::size_t{0}];
};
template <typename T>
concept IsSet = requires {
    typename T::key_type;
}
&&!IsMap<T>;

template <typename T>
using Members = boost::describe::
    describe_members<T, boost::describe::mod_any_access | boost::describe::mod_inherited>;

/// The stored text of an enumerator.
template <typename T>
std::string_view enumeratorText(T value) {
    if constexpr (HasRawValue<T>) {
        return rawValue(value);
    } else {
        return boost::describe::enum_to_string(value, "");
    }
}

/// The enumerator of that raw value or that name.
template <typename T>
T enumeratorOf(const Json& json) {
    if (!json.is_string()) {
        failWanting("one of a list of names");
    }
    const auto& text = json.get_ref<const std::string&>();
    std::optional<T> found;
    std::string choices;
    boost::mp11::mp_for_each<boost::describe::describe_enumerators<T>>([&](auto enumerator) {
        if (text == enumeratorText(enumerator.value) || text == enumerator.name) {
            found = enumerator.value;
        }
        choices += choices.empty() ? "" : ", ";
        choices += enumeratorText(enumerator.value);
    });
    if (!found) {
        failWanting("one of " + choices);
    }
    return *found;
}

template <typename T>
Json ofRecord(const T& record) {
    Json object = Json::object();
    boost::mp11::mp_for_each<Members<T>>([&](auto member) {
        const auto& field = record.*member.pointer;
        if constexpr (IsOptional<std::decay_t<decltype(field)>>::value) {
            if (!field) {
                return;
            }
        }
        object[member.name] = toJson(field);
    });
    return object;
}

template <typename T>
T toRecord(const Json& json) {
    if (!json.is_object()) {
        failWanting("an object");
    }
    T record{};
    boost::mp11::mp_for_each<Members<T>>([&](auto member) {
        auto& field = record.*member.pointer;
        using Field = std::decay_t<decltype(field)>;
        const auto entry = json.find(member.name);
        if (entry == json.end()) {
            if constexpr (!IsOptional<Field>::value) {
                throw RecordJsonError("is missing").within(member.name);
            }
            return;
        }
        try {
            field = fromJson<Field>(*entry);
        } catch (const RecordJsonError& error) {
            throw error.within(member.name);
        }
    });
    return record;
}

template <typename T>
T toList(const Json& json) {
    if (!json.is_array()) {
        failWanting("a list");
    }
    T list;
    std::size_t index = 0;
    for (const Json& element : json) {
        try {
            list.insert(list.end(), fromJson<typename T::value_type>(element));
        } catch (const RecordJsonError& error) {
            throw error.within("[" + std::to_string(index) + "]");
        }
        ++index;
    }
    return list;
}

template <typename T>
T toMap(const Json& json) {
    if (!json.is_object()) {
        failWanting("an object");
    }
    T map;
    for (const auto& [key, element] : json.items()) {
        try {
            map.emplace(key, fromJson<typename T::mapped_type>(element));
        } catch (const RecordJsonError& error) {
            throw error.within(key);
        }
    }
    return map;
}

template <typename T>
T toInteger(const Json& json) {
    const bool whole =
        json.is_number_integer() ||
        (json.is_number_float() && json.get<double>() == std::trunc(json.get<double>()));
    if (!whole) {
        failWanting("a whole number");
    }
    return json.get<T>();
}

}  // namespace record_json

template <typename T>
Json toJson(const T& value) {
    using namespace record_json;  // NOLINT(google-build-using-namespace)
    if constexpr (HasOwnForm<T>) {
        return JsonForm<T>::to(value);
    } else if constexpr (IsOptional<T>::value) {
        return value ? toJson(*value) : Json(nullptr);
    } else if constexpr (std::is_same_v<T, bool> || std::is_integral_v<T>) {
        return value;
    } else if constexpr (std::is_floating_point_v<T>) {
        if (std::isfinite(value)) {
            return value;
        }
        return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
    } else if constexpr (std::is_enum_v<T>) {
        return std::string(enumeratorText(value));
    } else if constexpr (IsText<T>) {
        return std::string(std::string_view(value));
    } else if constexpr (std::is_same_v<T, Uuid>) {
        return value.text();
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        return base64(value);
    } else if constexpr (IsMap<T>) {
        Json object = Json::object();
        for (const auto& [key, element] : value) {
            object[key] = toJson(element);
        }
        return object;
    } else if constexpr (IsSet<T>) {
        Json list = Json::array();
        for (const auto& element : value) {
            list.push_back(toJson(element));
        }
        return list;
    } else if constexpr (IsRecord<T>) {
        return ofRecord(value);
    } else {
        static_assert(IsList<T>, "the type has no JSON form: describe it or give it a JsonForm");
        Json list = Json::array();
        for (std::size_t i = 0; i < value.size(); ++i) {
            list.push_back(toJson(static_cast<std::decay_t<decltype(value[i])>>(value[i])));
        }
        return list;
    }
}

template <typename T>
T fromJson(const Json& json) {
    using namespace record_json;  // NOLINT(google-build-using-namespace)
    if constexpr (HasOwnForm<T>) {
        return JsonForm<T>::from(json);
    } else if constexpr (IsOptional<T>::value) {
        return json.is_null() ? T() : T(fromJson<typename T::value_type>(json));
    } else if constexpr (std::is_same_v<T, bool>) {
        if (!json.is_boolean()) {
            failWanting("true or false");
        }
        return json.get<bool>();
    } else if constexpr (std::is_integral_v<T>) {
        return toInteger<T>(json);
    } else if constexpr (std::is_floating_point_v<T>) {
        return numberOf(json);
    } else if constexpr (std::is_enum_v<T>) {
        return enumeratorOf<T>(json);
    } else if constexpr (std::is_constructible_v<T, std::string> && IsText<T>) {
        if (!json.is_string()) {
            failWanting("a text");
        }
        return T(json.get<std::string>());
    } else if constexpr (std::is_same_v<T, Uuid>) {
        const std::optional<Uuid> id =
            json.is_string() ? Uuid::parse(json.get_ref<const std::string&>()) : std::nullopt;
        if (!id) {
            failWanting("an identifier");
        }
        return *id;
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        if (!json.is_string()) {
            failWanting("a base64 text");
        }
        return bytesOfBase64(json.get_ref<const std::string&>());
    } else if constexpr (IsMap<T>) {
        return toMap<T>(json);
    } else if constexpr (IsRecord<T>) {
        return toRecord<T>(json);
    } else {
        return toList<T>(json);
    }
}

}  // namespace sorvane
