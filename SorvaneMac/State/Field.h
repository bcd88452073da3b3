#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "SorvaneCore/Project/Json.h"

namespace sorvane {

/// The name of a column that a setting refers to; it follows the column when it is renamed.
struct VariableName {
    std::string name;

    bool operator==(const VariableName&) const = default;
    bool isBlank() const { return name.empty(); }
};

/// Names of columns that a setting refers to.
using NameSet = std::set<std::string>;

/// When a field returns to its start value by itself.
enum class ResetRule {
    /// With the analysis state, whenever the table is replaced.
    withDataset,
    /// Never: a preference, or something whose owner decides.
    kept,
};

class FieldRegistry;
class JsonValueSink;

/// One piece of workspace state, as the registry sees it: by name, without its type.
class AnyField {
public:
    AnyField(FieldRegistry& registry, std::string name, ResetRule rule);
    virtual ~AnyField() = default;
    AnyField(const AnyField&) = delete;
    AnyField& operator=(const AnyField&) = delete;

    const std::string& name() const { return name_; }
    ResetRule resetRule() const { return rule_; }

    virtual void reset() = 0;
    virtual bool isAtStart() const = 0;
    Json json() const;
    /// Throws RecordJsonError when the JSON does not have the field's form.
    virtual void setJson(const Json& json) = 0;
    /// Follows a column that was renamed.
    virtual void renameVariable(std::string_view from, std::string_view to) = 0;
    /// Forgets a column that was removed.
    virtual void dropVariable(std::string_view name) = 0;

protected:
    virtual void write(JsonValueSink& sink) const = 0;
    void announce();
    /// Every read passes here: fields belong to the thread that made their registry, and a
    /// recording under way notes the field.
    void noteRead() const;

private:
    friend class FieldReads;

    FieldRegistry& registry_;
    std::string name_;
    ResetRule rule_;
    /// Counts the changes of this field.
    std::uint64_t version_ = 0;
};

/// The fields that something was derived from, each as it stood then.
class FieldReads {
public:
    /// Whether none of the fields changed since.
    bool areCurrent() const;

private:
    friend class AnyField;
    void add(const AnyField& field);

    std::map<const AnyField*, std::uint64_t> versions_;
};

/// Keeps an observer subscribed for as long as it lives.
using Subscription = std::shared_ptr<void>;

/// All fields of the workspace, in the order in which they were made.
///
/// Confined to the thread that made it.
class FieldRegistry {
public:
    using Observer = std::function<void(const AnyField&)>;

    /// Calls the observer after each change of any field.
    [[nodiscard]] Subscription observe(Observer observer);

    const std::vector<AnyField*>& fields() const { return fields_; }
    /// The field of that name; null without one.
    AnyField* find(std::string_view name) const;
    /// The fields that `derive` reads, so that what it derives can be kept until one changes.
    /// `derive` must not record in its turn.
    template <typename Derive>
    FieldReads recordReads(Derive&& derive) {
        recording_.emplace();
        std::forward<Derive>(derive)();
        return *std::exchange(recording_, std::nullopt);
    }

    /// Returns every field of the rule `withDataset` to its start.
    void resetWithDataset();
    void renameVariable(std::string_view from, std::string_view to);
    void dropVariable(std::string_view name);

private:
    friend class AnyField;
    void add(AnyField& field);
    void announce(const AnyField& field);

    std::vector<AnyField*> fields_;
    std::vector<std::weak_ptr<Observer>> observers_;
    std::optional<FieldReads> recording_;
    const std::thread::id owner_ = std::this_thread::get_id();
};

/// One piece of workspace state: a name, a start value, a reset rule, and observers told of change.
template <typename T>
class Field final : public AnyField {
public:
    Field(FieldRegistry& registry,
          std::string name,
          T start = T(),
          ResetRule rule = ResetRule::withDataset)
        : AnyField(registry, std::move(name), rule), start_(std::move(start)), value_(start_) {}

    const T& get() const {
        noteRead();
        return value_;
    }
    const T& operator*() const { return get(); }
    const T* operator->() const { return &get(); }
    const T& start() const { return start_; }

    /// Takes the value and tells the observers, unless it is the present one.
    void set(T value) {
        if (!(value == get())) {
            replace(std::move(value));
        }
    }
    /// Takes the value and tells the observers, without comparing; for values costly to compare.
    void replace(T value) {
        value_ = std::move(value);
        announce();
    }
    /// Changes the value in place and tells the observers.
    template <typename Change>
    void edit(Change&& change) {
        std::forward<Change>(change)(value_);
        announce();
    }

    void reset() override { replace(start_); }
    bool isAtStart() const override { return get() == start_; }
    // This and `write` are defined in FieldJson.h, which whoever makes fields includes.
    void setJson(const Json& json) override;

    void renameVariable(std::string_view from, std::string_view to) override {
        if constexpr (std::is_same_v<T, VariableName>) {
            if (value_.name == from) {
                replace({std::string(to)});
            }
        } else if constexpr (std::is_same_v<T, NameSet>) {
            if (value_.contains(std::string(from))) {
                edit([from, to](NameSet& names) {
                    names.erase(std::string(from));
                    names.emplace(to);
                });
            }
        }
    }
    void dropVariable(std::string_view name) override {
        if constexpr (std::is_same_v<T, VariableName>) {
            if (value_.name == name) {
                replace({});
            }
        } else if constexpr (std::is_same_v<T, NameSet>) {
            if (value_.contains(std::string(name))) {
                edit([name](NameSet& names) { names.erase(std::string(name)); });
            }
        }
    }

private:
    void write(JsonValueSink& sink) const override;

    const T start_;
    T value_;
};

}  // namespace sorvane
