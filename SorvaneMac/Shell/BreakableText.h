#pragma once

#include <QString>

/// Text as it is laid out in a narrow place, never as it is stored or copied: numbers stay in one
/// piece, and names that are longer than words have places at which a line may end.
namespace sorvane::BreakableText {

/// The text with invisible marks, which have no width: long words may break after an underscore,
/// and anywhere in what is still long; numbers may not.
QString of(const QString& text);
/// The text without these marks.
QString unmarked(QString text);

}  // namespace sorvane::BreakableText
