#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace sorvane {

/// What the values of a variable stand for, by value. Copies share one map until one of them is
/// changed, as a file can name one set of labels for thousands of variables.
class ValueLabels {
public:
    using Map = std::map<std::string, std::string, std::less<>>;
    using key_type = Map::key_type;
    using mapped_type = Map::mapped_type;
    using value_type = Map::value_type;
    using const_iterator = Map::const_iterator;
    using iterator = const_iterator;

    ValueLabels() = default;
    ValueLabels(Map labels) : labels_(std::make_shared<Map>(std::move(labels))) {}
    ValueLabels(std::initializer_list<value_type> labels) : ValueLabels(Map(labels)) {}
    // Without moves, that no object is left without a map.
    ValueLabels(const ValueLabels&) = default;
    ValueLabels& operator=(const ValueLabels&) = default;
    ~ValueLabels() = default;

    const_iterator begin() const { return labels_->begin(); }
    const_iterator end() const { return labels_->end(); }
    const_iterator find(std::string_view value) const { return labels_->find(value); }
    const std::string& at(const std::string& value) const { return labels_->at(value); }
    std::size_t size() const { return labels_->size(); }
    bool empty() const { return labels_->empty(); }

    /// Whether another object has the same map, so that a change would make a copy of it.
    bool isShared() const { return labels_.use_count() > 1; }
    /// Adds a label unless the value has one.
    void emplace(std::string value, std::string label) {
        ownLabels().emplace(std::move(value), std::move(label));
    }
    /// Gives a value a label, in the place of a former one.
    void set(std::string value, std::string label) {
        ownLabels()[std::move(value)] = std::move(label);
    }

    friend bool operator==(const ValueLabels& left, const ValueLabels& right) {
        return left.labels_ == right.labels_ || *left.labels_ == *right.labels_;
    }

private:
    Map& ownLabels() {
        if (isShared()) {
            labels_ = std::make_shared<Map>(*labels_);
        }
        return *labels_;
    }

    std::shared_ptr<Map> labels_ = std::make_shared<Map>();
};

}  // namespace sorvane
