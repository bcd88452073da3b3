#pragma once

#include "SorvaneCore/Project/DatasetJson.h"
#include "SorvaneCore/Project/RecordJson.h"
#include "SorvaneMac/State/Field.h"

/// The JSON of fields. Apart from Field.h, as those who only read and set fields need not know it.
namespace sorvane {

template <>
struct JsonForm<VariableName> {
    template <typename Sink>
    static void write(Sink& sink, const VariableName& value) {
        sink.text(value.name);
    }
    static VariableName from(const Json& json) { return {fromJson<std::string>(json)}; }
};

template <typename T>
void Field<T>::write(JsonValueSink& sink) const {
    writeJson(sink, get());
}

template <typename T>
void Field<T>::setJson(const Json& json) {
    replace(fromJson<T>(json));
}

}  // namespace sorvane
