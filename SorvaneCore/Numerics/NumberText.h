#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The one place where numbers become text and text becomes numbers, whatever the locale.
namespace sorvane::NumberText {

/// The number that a text spells, the whole of it, by the rules of the C routine in the C locale.
///
/// Input      text without surrounding white space; decimal point only, no thousands separators
/// Method     one division for a plain decimal of up to 15 digits, `from_chars` for other texts; a
///            leading "+", hexadecimal and out-of-range text go to `strtod_l`
/// Returns    the number; "inf" and "nan" in the spellings of the routine are numbers here
/// Failure    empty text, or text left over -> absent
/// Accuracy   correctly rounded      Cost about 5 ns for a short decimal
inline std::optional<double> parse(std::string_view text);

/// As `parse`, for loops over many cells: whether there is a number, and which. It spares the way
/// of an optional number through memory, a quarter of the cost.
bool read(std::string_view text, double& number);

/// "%.Nf" of the C routine, in the C locale: "0.12" for (0.125, 2), "-0.00" for (-0.001, 2).
std::string fixed(double value, int decimals);

/// "%.Ng" of the C routine, in the C locale.
std::string general(double value, int significantDigits);

/// A power of ten and what multiplies it, as a report writes it: "2.9 × 10⁻¹²" for (2.9e-12, 1).
///
/// Input      finite; decimals of the multiplier, at least 0
std::string powerOfTen(double value, int decimals);

/// The shortest text that reads back exactly ("0.1", "1e+22"); "nan", "inf" and "-inf" otherwise.
std::string shortest(double value);

/// A whole number in plain digits.
std::string integer(std::int64_t value);
std::string unsignedInteger(std::uint64_t value);

/// A number as it is written into a text cell.
///
/// Method     a value equal to its integer part prints as an integer, any other with four decimals
///            less trailing zeros and a trailing point; so -0.00001 prints "-0"
/// Failure    not finite -> the empty text
std::string derivedValue(double value);

/// A bound or a count in running text: "5" for 5.0, "4.50" for 4.5.
///
/// Input      finite, within the range of a 64-bit signed integer when whole
std::string clean(double value);

/// A p-value inside an engine sentence: "< .001" below 0.001, otherwise three decimals without the
/// leading zero ("1.000" at 1).
std::string pValue(double p);

inline std::optional<double> parse(std::string_view text) {
    double number = 0.0;
    return read(text, number) ? std::optional<double>(number) : std::nullopt;
}

}  // namespace sorvane::NumberText
