#pragma once

class QTextCharFormat;
class QTextDocument;

/// Columns of the tables of a text document as wide as their words and numbers need.
namespace sorvane::TableFitting {

/// Keeps the equal columns of a table into which everything fits; else gives every column its
/// longest word and shares the rest of the width among those that need less than their part. Where
/// the words do not fit side by side, the cells stand closer and their text becomes smaller.
///
/// Input      `width` of the text, in units of the device on which the document is laid out
/// Method     words end at blanks that hold no number to its sign; text is shrunk to no less than
///            three fifths of its size
/// Cost       linear
void fit(QTextDocument& document, double width);

/// The size of text in points as it was before it was made to fit; a size that it was given since
/// then counts.
double fullPoints(const QTextCharFormat& format);

}  // namespace sorvane::TableFitting
