#include "SorvaneMac/State/Field.h"

#include <algorithm>
#include <cassert>
#include <nlohmann/json.hpp>

#include "SorvaneCore/Project/JsonSink.h"

namespace sorvane {

AnyField::AnyField(FieldRegistry& registry, std::string name, ResetRule rule)
    : registry_(registry), name_(std::move(name)), rule_(rule) {
    registry_.add(*this);
}

Json AnyField::json() const {
    JsonValueSink sink;
    write(sink);
    return sink.take();
}

void AnyField::announce() {
    assert(registry_.owner_ == std::this_thread::get_id());
    ++version_;
    registry_.announce(*this);
}

void AnyField::noteRead() const {
    assert(registry_.owner_ == std::this_thread::get_id());
    if (registry_.recording_) {
        registry_.recording_->add(*this);
    }
}

bool FieldReads::areCurrent() const {
    return std::all_of(versions_.begin(), versions_.end(),
                       [](const auto& read) { return read.first->version_ == read.second; });
}

void FieldReads::add(const AnyField& field) {
    versions_.try_emplace(&field, field.version_);
}

Subscription FieldRegistry::observe(Observer observer) {
    auto held = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(held);
    return held;
}

AnyField* FieldRegistry::find(std::string_view name) const {
    const auto found = std::find_if(fields_.begin(), fields_.end(), [name](const AnyField* field) {
        return field->name() == name;
    });
    return found == fields_.end() ? nullptr : *found;
}

void FieldRegistry::resetWithDataset() {
    for (AnyField* field : fields_) {
        if (field->resetRule() == ResetRule::withDataset) {
            field->reset();
        }
    }
}

void FieldRegistry::renameVariable(std::string_view from, std::string_view to) {
    for (AnyField* field : fields_) {
        field->renameVariable(from, to);
    }
}

void FieldRegistry::dropVariable(std::string_view name) {
    for (AnyField* field : fields_) {
        field->dropVariable(name);
    }
}

void FieldRegistry::add(AnyField& field) {
    assert(find(field.name()) == nullptr);
    fields_.push_back(&field);
}

void FieldRegistry::announce(const AnyField& field) {
    // An observer may subscribe another or let one go, so the list is copied first.
    const std::vector<std::weak_ptr<Observer>> observers = observers_;
    for (const std::weak_ptr<Observer>& observer : observers) {
        if (const std::shared_ptr<Observer> held = observer.lock()) {
            (*held)(field);
        }
    }
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
}

}  // namespace sorvane
