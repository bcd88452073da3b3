#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sorvane {

enum class AssumptionSeverity { pass, caution, violation };
BOOST_DESCRIBE_ENUM(AssumptionSeverity, pass, caution, violation)

/// As the user reads it: "Met", "Caution", "Violated".
std::string_view displayName(AssumptionSeverity severity);

/// What could be done about an assumption that is not met.
struct AssumptionRemedy {
    std::string title{};
    std::string detail{};
    /// Names the procedure that a screen may offer to go to.
    std::optional<std::string> procedureHint{};

    bool operator==(const AssumptionRemedy&) const = default;
};
BOOST_DESCRIBE_STRUCT(AssumptionRemedy, (), (title, detail, procedureHint))

/// Whether one assumption of a model looks met on one target.
struct AssumptionFinding {
    std::string check{};
    std::string target{};
    std::string statisticLabel{};
    double statistic = 0.0;
    std::optional<double> pValue{};
    AssumptionSeverity severity = AssumptionSeverity::pass;
    std::string explanation{};
    std::vector<AssumptionRemedy> remedies{};

    bool operator==(const AssumptionFinding&) const = default;
};
BOOST_DESCRIBE_STRUCT(
    AssumptionFinding,
    (),
    (check, target, statisticLabel, statistic, pValue, severity, explanation, remedies))

}  // namespace sorvane
