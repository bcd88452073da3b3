#pragma once

#include <compare>
#include <optional>
#include <string>

/// The numbers of SPSS system files as texts.
namespace sorvane::SPSSNumbers {

/// How a variable's numbers are printed.
struct Format {
    int type = 0;
    int decimals = 0;

    auto operator<=>(const Format&) const = default;
};

/// One of all the formats that print every number as this one does.
Format effectiveFormat(Format format);

/// The text of a cell: a date where the format is one of dates and the number can be one, otherwise
/// as `trimNumber`.
std::string cellText(double value, Format format);

/// A whole number below 10^15 in plain digits, any other with so many decimals (1 to 10), or else
/// the shortest text that reads back.
std::string trimNumber(double value, int decimals);

/// "2014-09-22" for a number of seconds since 1582-10-14.
///
/// Failure    not positive, a year before 1583 or after 9998 -> absent
std::optional<std::string> formatSPSSDate(double seconds);

/// An end of a range or a single value of user-missing values: "LOWEST", "HIGHEST" or the number.
std::string missingText(double value);

}  // namespace sorvane::SPSSNumbers
