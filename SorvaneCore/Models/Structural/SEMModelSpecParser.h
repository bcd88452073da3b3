#pragma once

#include <boost/describe/class.hpp>
#include <boost/describe/enum.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sorvane {

/// =~, ~ and ~~.
enum class SEMSyntaxOperator { measurement, regression, covariance };
BOOST_DESCRIBE_ENUM(SEMSyntaxOperator, measurement, regression, covariance)
/// As it is written in a model.
std::string_view rawValue(SEMSyntaxOperator op);

/// One name on the right of a statement: "f =~ x1 + x2" has two terms.
struct SEMSyntaxTerm {
    std::string lhs{};
    SEMSyntaxOperator op = SEMSyntaxOperator::measurement;
    std::string rhs{};
    /// The number before "*".
    std::optional<double> fixedValue{};

    bool operator==(const SEMSyntaxTerm&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMSyntaxTerm, (), (lhs, op, rhs, fixedValue))

/// A text that is no model, or a model that the data do not fit; `what()` is what the user reads.
class SEMSyntaxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A model as it is written.
struct SEMParsedSpec {
    /// In order of writing.
    std::vector<SEMSyntaxTerm> terms{};
    /// Whatever stands left of =~, in order of first appearance.
    std::vector<std::string> latentVariables{};
    /// Every name, in order of first appearance.
    std::vector<std::string> allVariables{};

    bool operator==(const SEMParsedSpec&) const = default;
};
BOOST_DESCRIBE_STRUCT(SEMParsedSpec, (), (terms, latentVariables, allVariables))

namespace SEMModelSpecParser {

/// Reads the text of a structural model.
///
/// Input      statements on lines of their own or parted by ";"; "#" begins a comment that ends
///            with the line or the next ";". A name is a letter or "_" with letters, numbers or "_"
///            after it, or anything in back-ticks; "0.5*x" fixes the coefficient of x
///            at a finite number
/// Failure    throws SEMSyntaxError for the first statement that cannot be read, or when there is
///            none
/// Cost       O(length of the text)
SEMParsedSpec parse(std::string_view text);

}  // namespace SEMModelSpecParser

}  // namespace sorvane
