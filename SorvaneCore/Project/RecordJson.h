#pragma once

#include <boost/describe/enum_to_string.hpp>
#include <boost/describe/enumerators.hpp>
#include <boost/describe/members.hpp>
#include <boost/mp11/algorithm.hpp>
#include <chrono>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"
#include "SorvaneCore/Numerics/NumberText.h"
#include "SorvaneCore/Project/ISODate.h"
#include "SorvaneCore/Project/JsonSink.h"

/// The JSON form of every record: an object with the field names as keys in the order of the
/// fields, absent optional fields left out.
///
/// A number that is not finite is the text "nan", "inf" or "-inf"; an enumeration is its raw value;
/// bytes are base64; an identifier is its text, and so is a moment.
namespace sorvane {

/// JSON that does not have the form of the record asked for; the text says where.
class RecordJsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
    /// The same error, seen from the record or list that holds the place.
    RecordJsonError within(const std::string& place) const;
};

/// Specialised for a type whose JSON form is not that of a plain record: `write(sink, value)`, and
/// `from(json)` where it is read back.
template <typename T>
struct JsonForm;

/// Tells a sink the JSON form of a value, piece by piece.
template <typename Sink, typename T>
void writeJson(Sink& sink, const T& value);

/// Throws RecordJsonError when the JSON does not have the form of `T`.
template <typename T>
T fromJson(const Json& json);

namespace record_json {

std::string base64(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> bytesOfBase64(const std::string& text);
[[noreturn]] void failWanting(std::string_view what);

// What a JSON value holds, so that readers of records need not know the JSON library.
bool isNull(const Json& json);
/// Throw RecordJsonError for JSON of another form.
bool booleanOf(const Json& json);
double numberOf(const Json& json);
const std::string& textOf(const Json& json, std::string_view wanted = "a text");
std::vector<const Json*> elementsOf(const Json& json);
std::vector<std::pair<const std::string*, const Json*>> membersOf(const Json& json);
/// Null where there is none; throws RecordJsonError for JSON that is no object.
const Json* memberOf(const Json& json, const char* name);
/// Absent for anything but a whole number of 64 bits.
std::optional<std::int64_t> wholeNumberOf(const Json& json);
std::optional<std::uint64_t> unsignedNumberOf(const Json& json);

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <typename T>
concept HasOwnForm = requires(JsonValueSink& sink, const T& value) {
    JsonForm<T>::write(sink, value);
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
    const std::string& text = textOf(json, "one of a list of names");
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

template <typename Sink, typename T>
void writeRecord(Sink& sink, const T& record) {
    sink.beginObject();
    boost::mp11::mp_for_each<Members<T>>([&](auto member) {
        const auto& field = record.*member.pointer;
        if constexpr (IsOptional<std::decay_t<decltype(field)>>::value) {
            if (!field) {
                return;
            }
        }
        sink.key(member.name);
        writeJson(sink, field);
    });
    sink.endObject();
}

template <typename Sink, typename T>
void writeMap(Sink& sink, const T& map) {
    sink.beginObject();
    for (const auto& [key, element] : map) {
        sink.key(key);
        writeJson(sink, element);
    }
    sink.endObject();
}

template <typename Sink, typename T>
void writeList(Sink& sink, const T& list) {
    sink.beginList();
    if constexpr (IsSet<T>) {
        for (const auto& element : list) {
            writeJson(sink, element);
        }
    } else {
        static_assert(IsList<T>, "the type has no JSON form: describe it or give it a JsonForm");
        for (std::size_t i = 0; i < list.size(); ++i) {
            writeJson(sink, static_cast<std::decay_t<decltype(list[i])>>(list[i]));
        }
    }
    sink.endList();
}

template <typename T>
T toRecord(const Json& json) {
    T record{};
    boost::mp11::mp_for_each<Members<T>>([&](auto member) {
        auto& field = record.*member.pointer;
        using Field = std::decay_t<decltype(field)>;
        const Json* entry = memberOf(json, member.name);
        if (!entry) {
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
    T list;
    std::int64_t index = 0;
    for (const Json* element : elementsOf(json)) {
        try {
            list.insert(list.end(), fromJson<typename T::value_type>(*element));
        } catch (const RecordJsonError& error) {
            throw error.within("[" + NumberText::integer(index) + "]");
        }
        ++index;
    }
    return list;
}

template <typename T>
T toMap(const Json& json) {
    T map;
    for (const auto& [key, element] : membersOf(json)) {
        try {
            map.emplace(*key, fromJson<typename T::mapped_type>(*element));
        } catch (const RecordJsonError& error) {
            throw error.within(*key);
        }
    }
    return map;
}

template <typename T>
T toInteger(const Json& json) {
    if constexpr (std::is_same_v<T, std::uint64_t>) {
        if (const std::optional<std::uint64_t> number = unsignedNumberOf(json)) {
            return *number;
        }
    }
    const std::optional<std::int64_t> whole = wholeNumberOf(json);
    if (!whole) {
        failWanting("a whole number");
    }
    if (!std::in_range<T>(*whole)) {
        failWanting(*whole < 0 && std::is_unsigned_v<T> ? "a whole number that is not negative"
                                                        : "a whole number closer to 0");
    }
    return static_cast<T>(*whole);
}

}  // namespace record_json

template <typename Sink, typename T>
void writeJson(Sink& sink, const T& value) {
    using namespace record_json;  // NOLINT(google-build-using-namespace)
    if constexpr (HasOwnForm<T>) {
        JsonForm<T>::write(sink, value);
    } else if constexpr (IsOptional<T>::value) {
        value ? writeJson(sink, *value) : sink.null();
    } else if constexpr (std::is_same_v<T, bool>) {
        sink.boolean(value);
    } else if constexpr (std::is_same_v<T, std::uint64_t>) {
        sink.unsignedInteger(value);
    } else if constexpr (std::is_integral_v<T>) {
        sink.integer(static_cast<std::int64_t>(value));
    } else if constexpr (std::is_floating_point_v<T>) {
        std::isfinite(value) ? sink.number(value)
                             : sink.text(std::isnan(value) ? "nan"
                                         : value > 0       ? "inf"
                                                           : "-inf");
    } else if constexpr (std::is_enum_v<T>) {
        sink.text(enumeratorText(value));
    } else if constexpr (IsText<T>) {
        sink.text(value);
    } else if constexpr (std::is_same_v<T, Uuid>) {
        sink.text(value.text());
    } else if constexpr (std::is_same_v<T, std::chrono::sys_seconds>) {
        sink.text(ISODate::text(value));
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        sink.text(base64(value));
    } else if constexpr (IsMap<T>) {
        writeMap(sink, value);
    } else if constexpr (IsRecord<T>) {
        writeRecord(sink, value);
    } else {
        writeList(sink, value);
    }
}

template <typename T>
T fromJson(const Json& json) {
    using namespace record_json;  // NOLINT(google-build-using-namespace)
    if constexpr (HasOwnForm<T>) {
        return JsonForm<T>::from(json);
    } else if constexpr (IsOptional<T>::value) {
        return isNull(json) ? T() : T(fromJson<typename T::value_type>(json));
    } else if constexpr (std::is_same_v<T, bool>) {
        return booleanOf(json);
    } else if constexpr (std::is_integral_v<T>) {
        return toInteger<T>(json);
    } else if constexpr (std::is_floating_point_v<T>) {
        return numberOf(json);
    } else if constexpr (std::is_enum_v<T>) {
        return enumeratorOf<T>(json);
    } else if constexpr (std::is_constructible_v<T, std::string> && IsText<T>) {
        return T(textOf(json));
    } else if constexpr (std::is_same_v<T, Uuid>) {
        const std::optional<Uuid> id = Uuid::parse(textOf(json, "an identifier"));
        if (!id) {
            failWanting("an identifier");
        }
        return *id;
    } else if constexpr (std::is_same_v<T, std::chrono::sys_seconds>) {
        constexpr std::string_view wanted = "a date such as 2026-03-01T09:30:05Z";
        const auto moment = ISODate::parse(textOf(json, wanted));
        if (!moment) {
            failWanting(wanted);
        }
        return *moment;
    } else if constexpr (std::is_same_v<T, std::vector<std::uint8_t>>) {
        return bytesOfBase64(textOf(json, "a base64 text"));
    } else if constexpr (IsMap<T>) {
        return toMap<T>(json);
    } else if constexpr (IsRecord<T>) {
        return toRecord<T>(json);
    } else {
        return toList<T>(json);
    }
}

}  // namespace sorvane
