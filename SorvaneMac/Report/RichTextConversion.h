#pragma once

#include "SorvaneMac/Report/RichDocument.h"

class QTextBlock;
class QTextDocument;

/// Between the document that exporters read and the one that the editor shows.
namespace sorvane::RichTextConversion {

/// Replaces the contents of a text document; its margin, default font and page size stay.
///
/// Method     tables become tables of the full width whose heads repeat on every page, cell rules
///            their top and bottom borders; the undo history starts anew
/// Cost       linear; a lone empty line precedes a table with which the document begins
void write(const RichDocument& document, QTextDocument& target);

/// The document as it now stands in the editor, with every change the user made.
///
/// Returns    no paragraphs for an empty editor; tables numbered from 1; neighbouring text of one
///            style is one run; lengths in twentieths of a point
RichDocument read(const QTextDocument& source);

/// Whether a block must stay on the page of the one that follows it.
bool keepsWithNext(const QTextBlock& block);

}  // namespace sorvane::RichTextConversion
