#pragma once

#include <boost/describe/class.hpp>
#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "SorvaneCore/Dataset/Uuid.h"

namespace sorvane {

/// What makes an analysis repeatable: what was run, on which variables, under which rules and
/// options, by which engine.
struct MethodFile {
    Uuid id{};
    std::string analysisType{};
    std::vector<std::string> variablesUsed{};
    std::vector<std::string> filtersUsed{};
    std::string missingDataRule{};
    std::map<std::string, std::string> options{};
    std::chrono::sys_seconds timestamp{};
    std::string engineVersion{};
    std::optional<std::string> resultHash{};

    bool operator==(const MethodFile&) const = default;

    /// The analysis in file-name form and the start of the identifier:
    /// "scale_reliability_4F2A91C0.svmethod".
    std::string defaultFilename() const;
};
BOOST_DESCRIBE_STRUCT(MethodFile,
                      (),
                      (id,
                       analysisType,
                       variablesUsed,
                       filtersUsed,
                       missingDataRule,
                       options,
                       timestamp,
                       engineVersion,
                       resultHash))

}  // namespace sorvane
