#include "SorvaneCore/Import/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "SorvaneCore/Dataset/UnicodeText.h"

namespace sorvane::TextEncoding {

namespace {

constexpr char32_t byteOrderMark = 0xFEFF;

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

void append(char32_t c, std::string& text) {
    const auto add = [&text](char32_t bits) {
        text.push_back(static_cast<char>(bits));
    };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

enum class ByteOrder { littleEndian, bigEndian };

/// Walks the characters of UTF-16 bytes.
class Utf16Reader {
public:
    Utf16Reader(std::string_view bytes, ByteOrder order) : bytes_(bytes), order_(order) {}

    bool atEnd() const { return position_ + 1 >= bytes_.size(); }
    /// The next character; absent for a surrogate without its partner.
    std::optional<char32_t> next() {
        const char32_t unit = nextUnit();
        if (unit < 0xD800 || unit > 0xDFFF) {
            return unit;
        }
        if (unit > 0xDBFF || atEnd()) {
            return std::nullopt;
        }
        const char32_t partner = nextUnit();
        if (partner < 0xDC00 || partner > 0xDFFF) {
            return std::nullopt;
        }
        return 0x10000 + ((unit - 0xD800) << 10) + (partner - 0xDC00);
    }

private:
    char32_t nextUnit() {
        const char32_t first = byteAt(bytes_, position_);
        const char32_t second = byteAt(bytes_, position_ + 1);
        position_ += 2;
        return order_ == ByteOrder::littleEndian ? second << 8 | first : first << 8 | second;
    }

    std::string_view bytes_;
    ByteOrder order_;
    std::size_t position_ = 0;
};

bool isLineBreakOrDelimiter(char32_t c) {
    return c == '\n' || c == '\r' || c == ',' || c == '\t' || c == ';';
}

/// Whether bytes without a byte-order mark are UTF-16 text of this order.
///
/// Nearly any Latin-1 text of even length is well-formed UTF-16 too, as ideographs two letters at a
/// time. It never holds a line break or a delimiter then, as these need a zero byte; and no table
/// is without one. Line breaks beyond Latin-1, such as U+2028, do not count: " (" spells one.
bool isPlausibleUtf16(std::string_view bytes, ByteOrder order) {
    if (bytes.empty() || bytes.size() % 2 != 0) {
        return false;
    }
    bool hasStructure = false;
    for (Utf16Reader reader(bytes, order); !reader.atEnd();) {
        const std::optional<char32_t> c = reader.next();
        if (!c || *c == 0) {
            return false;
        }
        hasStructure = hasStructure || isLineBreakOrDelimiter(*c);
    }
    return hasStructure;
}

std::optional<ByteOrder> markedOrder(std::string_view bytes) {
    if (bytes.size() < 2) {
        return std::nullopt;
    }
    for (const ByteOrder order : {ByteOrder::littleEndian, ByteOrder::bigEndian}) {
        if (Utf16Reader(bytes, order).next() == byteOrderMark) {
            return order;
        }
    }
    return std::nullopt;
}

bool isMarkedUtf16(std::string_view bytes) {
    const std::optional<ByteOrder> order = markedOrder(bytes);
    if (!order || bytes.size() % 2 != 0) {
        return false;
    }
    for (Utf16Reader reader(bytes, *order); !reader.atEnd();) {
        if (!reader.next()) {
            return false;
        }
    }
    return true;
}

std::string fromUtf16(std::string_view bytes, ByteOrder order) {
    std::string text;
    text.reserve(bytes.size() / 2);
    for (Utf16Reader reader(bytes, order); !reader.atEnd();) {
        append(reader.next().value_or(0xFFFD), text);
    }
    return text;
}

std::string fromLatin1(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes) {
        append(static_cast<std::uint8_t>(byte), text);
    }
    return text;
}

/// Bytes 0x80 to 0x9F of code page 1252.
constexpr std::array<char16_t, 32> windows1252Block = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::string fromWindows1252(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        const auto c = static_cast<std::uint8_t>(byte);
        append(c >= 0x80 && c <= 0x9F ? windows1252Block[c - 0x80] : c, text);
    }
    return text;
}

/// How files that are no text begin: programs, archives and workbooks, pages, pictures, system
/// files of statistics programs. Latin-1 would take them, as it takes any byte.
constexpr std::array<std::string_view, 8> binarySignatures = {
    "\x7F"
    "ELF",
    "PK\x03\x04",
    "\x1F\x8B\x08",
    "\xD0\xCF\x11\xE0",
    "%PDF-",
    "\x89PNG\r\n",
    "\xFF\xD8\xFF",
    "$FL2@(#)"};

bool isBinary(std::string_view bytes) {
    return std::any_of(
        binarySignatures.begin(), binarySignatures.end(),
        [bytes](std::string_view signature) { return bytes.starts_with(signature); });
}

bool takes(Encoding encoding, std::string_view bytes) {
    switch (encoding) {
        case Encoding::utf8:
            return UnicodeText::isValidUtf8(bytes);
        case Encoding::utf16:
            return isMarkedUtf16(bytes);
        case Encoding::utf16LittleEndian:
            return isPlausibleUtf16(bytes, ByteOrder::littleEndian);
        case Encoding::utf16BigEndian:
            return isPlausibleUtf16(bytes, ByteOrder::bigEndian);
        case Encoding::latin1:
        case Encoding::windows1252:
            break;
    }
    return !isBinary(bytes);
}

}  // namespace

std::optional<Encoding> recognized(std::string_view bytes) {
    using enum Encoding;
    for (const Encoding encoding :
         {utf8, utf16, utf16LittleEndian, utf16BigEndian, latin1, windows1252}) {
        if (takes(encoding, bytes)) {
            return encoding;
        }
    }
    return std::nullopt;
}

std::string toUtf8(std::string_view bytes, Encoding encoding) {
    switch (encoding) {
        case Encoding::utf8:
            break;
        case Encoding::utf16:
            return fromUtf16(bytes, markedOrder(bytes).value_or(ByteOrder::bigEndian));
        case Encoding::utf16LittleEndian:
            return fromUtf16(bytes, ByteOrder::littleEndian);
        case Encoding::utf16BigEndian:
            return fromUtf16(bytes, ByteOrder::bigEndian);
        case Encoding::latin1:
            return fromLatin1(bytes);
        case Encoding::windows1252:
            return fromWindows1252(bytes);
    }
    return std::string(bytes);
}

}  // namespace sorvane::TextEncoding
