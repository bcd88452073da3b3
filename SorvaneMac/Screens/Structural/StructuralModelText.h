#pragma once

#include <boost/describe/enum.hpp>
#include <string>
#include <string_view>
#include <vector>

/// Writing aids for the text of a structural model.
namespace sorvane::StructuralModelText {

enum class Template { oneFactor, twoFactors, mediation };
BOOST_DESCRIBE_ENUM(Template, oneFactor, twoFactors, mediation)
/// The name by which a script asks for it: "cfa1", "cfa2" or "mediation".
std::string_view rawValue(Template value);

/// A name as the model's syntax takes it: as it stands where it is a letter followed by letters,
/// numbers or "_", else in back-ticks.
std::string quotedName(std::string_view name);

/// The text that an empty box starts with: a factor of the first three variables.
///
/// Input      the numeric variables; with fewer than three a placeholder stands for them
std::string starter(const std::vector<std::string>& numeric);
/// A whole model of the first numeric variables, or of placeholders where there are too few.
std::string filled(Template wanted, const std::vector<std::string>& numeric);

/// The text with a name at its end, after a "+" where the text does not already wait for a name, and
/// on a line of its own after a comment.
std::string withName(std::string_view text, std::string_view name);

/// The text with another name in place of a column's.
///
/// Method     whole names only, in back-ticks or bare, and none in comments; a text need not parse
/// Returns    the text as it stands where the old or the new name is that of a latent variable in it
std::string withRenamed(std::string_view text, std::string_view from, std::string_view to);

}  // namespace sorvane::StructuralModelText
