#include "SorvaneMac/Report/RTFReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <unicode/utf16.h>
#include <unicode/utf8.h>
#include <utility>
#include <vector>

#include "SorvaneMac/Report/RTFCharacters.h"
#include "SorvaneMac/Report/RTFLexer.h"
#include "SorvaneMac/Report/RTFRowDefinition.h"
#include "SorvaneMac/Report/RTFTableBuilder.h"

namespace sorvane::RTFReader {
namespace {

constexpr double twipsPerPoint = 20;

/// Far beyond any document; it bounds the memory that a hostile one can take.
constexpr std::size_t deepestNesting = 1000;

constexpr std::array<std::string_view, 18> passedOver{
    "colortbl", "stylesheet", "info",    "header",    "headerl",           "headerr",
    "headerf",  "footer",     "footerl", "footerr",   "footerf",           "footnote",
    "fldinst",  "nonshppict", "objdata", "listtable", "listoverridetable", "xmlnstbl"};

constexpr std::array<std::string_view, 6> monospacedNames{"Courier", "Mono",     "Menlo",
                                                          "Monaco",  "Consolas", "Typewriter"};

enum class Destination { body, fontTable, picture, nothing };

/// What a group sets and its end undoes.
struct Group {
    Destination destination = Destination::body;
    TextStyle style;
    Paragraph format;
    bool inTable = false;
    /// How many characters stand in for one \u.
    int fallbackLength = 1;
};

struct Picture {
    bool isPNG = false;
    int width = 0;
    int height = 0;
    std::string hex;
};

class Reader {
public:
    explicit Reader(std::string_view rtf) : lexer_(rtf) {}

    RichDocument read() {
        while (const auto token = lexer_.next()) {
            handle(*token);
        }
        endDocument();
        return std::move(document_);
    }

private:
    void handle(const RTFToken& token) {
        const bool starts = std::exchange(atGroupStart_, false);
        switch (token.kind) {
            case RTFTokenKind::groupStart:
                startGroup();
                break;
            case RTFTokenKind::groupEnd:
                endGroup();
                break;
            case RTFTokenKind::control:
                handleControl(token, starts);
                break;
            case RTFTokenKind::hexByte:
                if (!isFallback()) {
                    addByte(static_cast<std::uint8_t>(token.parameter.value_or(0)));
                }
                break;
            case RTFTokenKind::text:
                addText(token.text);
                break;
        }
    }

    void startGroup() {
        fallbackLeft_ = 0;
        atGroupStart_ = true;
        if (enclosing_.size() < deepestNesting) {
            enclosing_.push_back(group_);
        } else {
            ++tooDeep_;
        }
    }

    void endGroup() {
        fallbackLeft_ = 0;
        if (tooDeep_ > 0 || enclosing_.empty()) {
            tooDeep_ -= tooDeep_ > 0 ? 1 : 0;
            return;
        }
        const Destination ended = group_.destination;
        group_ = std::move(enclosing_.back());
        enclosing_.pop_back();
        if (ended == Destination::picture && group_.destination != Destination::picture) {
            endPicture();
        }
    }

    void handleControl(const RTFToken& token, bool startsGroup) {
        if (token.text == "*") {
            starred_ = startsGroup;
            return;
        }
        const bool starred = std::exchange(starred_, false);
        if (isFallback() || group_.destination == Destination::nothing) {
            return;
        }
        if (startsGroup || starred) {
            if (enterDestination(token.text, starred)) {
                return;
            }
        }
        const int value = token.parameter.value_or(1);
        if (group_.destination == Destination::fontTable) {
            applyFontTableControl(token.text, value);
        } else if (group_.destination == Destination::picture) {
            applyPictureControl(token.text, value);
        } else if (!applyCharacterControl(token) && !applyParagraphControl(token.text, value) &&
                   !applyTableControl(token.text, value)) {
            addNamedCharacter(token.text);
        }
    }

    bool enterDestination(std::string_view name, bool starred) {
        if (name == "fonttbl") {
            group_.destination = Destination::fontTable;
        } else if (name == "pict") {
            group_.destination = Destination::picture;
            picture_ = {};
        } else if (std::ranges::find(passedOver, name) != passedOver.end() ||
                   (starred && name != "shppict")) {
            group_.destination = Destination::nothing;
        } else {
            return false;
        }
        return true;
    }

    // Fonts

    void applyFontTableControl(std::string_view name, int value) {
        if (name == "f") {
            definedFont_ = value;
            fontName_.clear();
        } else if (name == "fmodern") {
            setMonospaced(definedFont_);
        }
    }

    void addFontName(std::string_view text) {
        fontName_ += text;
        for (const std::string_view part : monospacedNames) {
            if (fontName_.find(part) != std::string::npos) {
                setMonospaced(definedFont_);
            }
        }
        if (text.ends_with(';')) {
            fontName_.clear();
        }
    }

    void setMonospaced(int font) {
        if (!isMonospaced(font)) {
            monospacedFonts_.push_back(font);
        }
    }

    bool isMonospaced(int font) const {
        return std::ranges::find(monospacedFonts_, font) != monospacedFonts_.end();
    }

    // Characters

    bool applyCharacterControl(const RTFToken& token) {
        const std::string_view name = token.text;
        const bool on = token.parameter.value_or(1) != 0;
        TextStyle& style = group_.style;
        if (name == "b") {
            style.bold = on;
        } else if (name == "i") {
            style.italic = on;
        } else if (name == "ul" || name == "uld" || name == "uldb" || name == "ulw") {
            style.underline = on;
        } else if (name == "ulnone") {
            style.underline = false;
        } else if (name == "fs") {
            style.points = std::clamp(token.parameter.value_or(24), 2, 2000) / 2.0;
        } else if (name == "f") {
            style.font =
                isMonospaced(token.parameter.value_or(0)) ? FontRole::monospaced : FontRole::system;
        } else if (name == "plain") {
            style = {};
        } else if (name == "uc") {
            group_.fallbackLength = std::clamp(token.parameter.value_or(1), 0, 100);
        } else if (name == "u") {
            addUnicodeUnit(token.parameter.value_or('?'));
            fallbackLeft_ = group_.fallbackLength;
        } else {
            return false;
        }
        return true;
    }

    bool isFallback() {
        if (fallbackLeft_ == 0) {
            return false;
        }
        --fallbackLeft_;
        return true;
    }

    void addText(std::string_view text) {
        const auto skipped = std::min(static_cast<std::size_t>(fallbackLeft_), text.size());
        fallbackLeft_ -= static_cast<int>(skipped);
        text.remove_prefix(skipped);
        switch (group_.destination) {
            case Destination::nothing:
                break;
            case Destination::fontTable:
                addFontName(text);
                break;
            case Destination::picture:
                picture_.hex += text;
                break;
            case Destination::body:
                for (const char c : text) {
                    addByte(static_cast<std::uint8_t>(c));
                }
                break;
        }
    }

    void addByte(std::uint8_t byte) { addCharacter(RTFCharacters::windows1252(byte)); }

    void addNamedCharacter(std::string_view control) {
        if (const auto character = RTFCharacters::named(control)) {
            addCharacter(*character);
        }
    }

    void addUnicodeUnit(int value) {
        const char32_t unit = static_cast<char32_t>(value) & 0xFFFFU;
        if (U16_IS_LEAD(unit)) {
            leadSurrogate_ = unit;
        } else if (U16_IS_TRAIL(unit)) {
            const char32_t lead = std::exchange(leadSurrogate_, 0);
            addCharacter(lead == 0 ? U'\uFFFD'
                                   : static_cast<char32_t>(U16_GET_SUPPLEMENTARY(lead, unit)));
        } else {
            addCharacter(unit);
        }
    }

    void addCharacter(char32_t character) {
        const bool isControl = character < 0x20 && character != U'\t' && character != U'\n';
        if (group_.destination != Destination::body || isControl) {
            return;
        }
        if (runs_.empty() || !(runs_.back().style == group_.style)) {
            runs_.push_back({.text = {}, .style = group_.style});
        }
        char bytes[U8_MAX_LENGTH];
        std::size_t length = 0;
        U8_APPEND_UNSAFE(bytes, length, character);
        runs_.back().text.append(bytes, length);
    }

    // Paragraphs

    bool applyParagraphControl(std::string_view name, int value) {
        Paragraph& format = group_.format;
        if (name == "par" || name == "\n" || name == "\r" || name == "sect" || name == "page") {
            endParagraph();
        } else if (name == "pard") {
            format = {};
            group_.inTable = false;
        } else if (name == "ql") {
            format.alignment = TextAlignment::left;
        } else if (name == "qc") {
            format.alignment = TextAlignment::center;
        } else if (name == "qr") {
            format.alignment = TextAlignment::right;
        } else if (name == "qj") {
            format.alignment = TextAlignment::justified;
        } else if (name == "sb") {
            format.spaceBefore = std::max(value, 0) / twipsPerPoint;
        } else if (name == "sa") {
            format.spaceAfter = std::max(value, 0) / twipsPerPoint;
        } else if (name == "keepn") {
            format.keepWithNext = value != 0;
        } else if (name == "intbl") {
            group_.inTable = true;
        } else {
            return false;
        }
        return true;
    }

    Paragraph takeParagraph() {
        Paragraph paragraph = group_.format;
        paragraph.runs = std::exchange(runs_, {});
        paragraph.figure = std::exchange(figure_, std::nullopt);
        return paragraph;
    }

    void endParagraph() {
        if (group_.inTable) {
            cell_.push_back(takeParagraph());
            return;
        }
        endTable();
        document_.paragraphs.push_back(takeParagraph());
    }

    /// Text without a paragraph end stands in a paragraph all the same.
    void endDocument() {
        endTable();
        for (auto& cell : cells_) {
            std::ranges::move(cell, std::back_inserter(document_.paragraphs));
        }
        std::ranges::move(cell_, std::back_inserter(document_.paragraphs));
        if (!runs_.empty() || figure_) {
            document_.paragraphs.push_back(takeParagraph());
        }
    }

    // Tables

    bool applyTableControl(std::string_view name, int value) {
        if (name == "cell") {
            cell_.push_back(takeParagraph());
            cells_.push_back(std::exchange(cell_, {}));
            return true;
        }
        if (name == "row") {
            table_.addRow(rowDefinition_.cells(), std::exchange(cells_, {}));
            return true;
        }
        return rowDefinition_.apply(name, value);
    }

    void endTable() {
        if (table_.isEmpty()) {
            return;
        }
        std::ranges::move(table_.take(++tableCount_), std::back_inserter(document_.paragraphs));
    }

    // Pictures

    void applyPictureControl(std::string_view name, int value) {
        if (name == "pngblip") {
            picture_.isPNG = true;
        } else if (name == "picwgoal") {
            picture_.width = value;
        } else if (name == "pichgoal") {
            picture_.height = value;
        }
    }

    void endPicture() {
        std::optional<InlineFigure> figure = inlineFigure(bytesOfHex(picture_.hex));
        if (!picture_.isPNG || !figure) {
            return;
        }
        if (picture_.width > 0 && picture_.height > 0) {
            figure->width = picture_.width / twipsPerPoint;
            figure->height = picture_.height / twipsPerPoint;
        }
        figure_ = std::move(figure);
    }

    RTFLexer lexer_;
    RichDocument document_;

    Group group_;
    std::vector<Group> enclosing_;
    /// Open groups beyond the deepest nesting, which share the state of the innermost one kept.
    std::size_t tooDeep_ = 0;
    bool atGroupStart_ = false;
    bool starred_ = false;
    int fallbackLeft_ = 0;
    char32_t leadSurrogate_ = 0;

    int definedFont_ = 0;
    std::string fontName_;
    std::vector<int> monospacedFonts_;

    /// The paragraph being read.
    std::vector<TextRun> runs_;
    std::optional<InlineFigure> figure_;

    /// The cell and the row being read.
    std::vector<Paragraph> cell_;
    std::vector<std::vector<Paragraph>> cells_;
    RTFRowDefinition rowDefinition_;
    RTFTableBuilder table_;
    int tableCount_ = 0;

    Picture picture_;
};

}  // namespace

std::optional<RichDocument> document(std::string_view rtf) {
    if (!rtf.starts_with("{\\rtf")) {
        return std::nullopt;
    }
    return Reader(rtf).read();
}

}  // namespace sorvane::RTFReader
