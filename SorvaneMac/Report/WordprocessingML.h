#pragma once

#include <span>
#include <string>
#include <vector>

#include "SorvaneMac/Report/RichDocument.h"

namespace sorvane {

/// What stands inside the body of a Word document.
struct WordBody {
    std::string xml{};
    /// The pictures the XML refers to as "rId1", "rId2", …, in that order; owned by the paragraphs.
    std::vector<const InlineFigure*> figures{};
};

/// Paragraphs as WordprocessingML, all formatting direct.
///
/// Method     one walk; the cells of a table are gathered into its rows and span the full text
///            width
/// Cost       linear, about 230 bytes of XML a table cell
WordBody wordBody(std::span<const Paragraph> paragraphs);

}  // namespace sorvane
