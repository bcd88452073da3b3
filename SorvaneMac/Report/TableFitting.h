#pragma once

class QTextDocument;

/// Columns of the tables of a text document as wide as their words and numbers need.
namespace sorvane::TableFitting {

/// What happens to a table whose words do not fit side by side.
enum class Overflow {
    /// Its cells stand closer, and its text becomes smaller.
    shrinks,
    /// Its cells stand closer, and it becomes wider than the page.
    widens,
};

/// Keeps the equal columns of a table into which everything fits; else gives every column its
/// longest word and shares the rest of the width among those that need less than their part.
///
/// Input      `width` of the text, in units of the device on which the document is laid out
/// Method     words end at blanks; text is shrunk to no less than three fifths of its size
/// Cost       linear
void fit(QTextDocument& document, double width, Overflow overflow);

}  // namespace sorvane::TableFitting
