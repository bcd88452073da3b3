#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

#include "SorvaneCore/Project/Json.h"

namespace sorvane {

/// JSON that somebody gave and that cannot be taken; the text is one sentence.
class GivenJsonError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads what people and programs give as JSON; `what` names it in the sentence of an error, such
/// as "arguments".
namespace GivenJson {

/// A text of blanks alone is an empty object.
///
/// Failure    no JSON, more than 200 levels, a name twice in one object, a number beyond the doubles
///            -> GivenJsonError
Json of(std::string_view text, const std::string& what);
/// The same of a file.
///
/// Failure    also one that cannot be read -> GivenJsonError
Json ofFile(const std::filesystem::path& file, const std::string& what);

}  // namespace GivenJson

}  // namespace sorvane
