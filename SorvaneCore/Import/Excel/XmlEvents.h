#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace sorvane {

/// The name of an element or attribute, prefix included, as the parser holds it.
class XmlName {
public:
    explicit XmlName(const char* text) : text_(text) {}

    std::string_view text() const { return text_; }
    /// Reads no further than the first difference; a sheet has millions of names.
    bool operator==(std::string_view other) const {
        const char* at = text_;
        for (const char c : other) {
            if (*at++ != c) {
                return false;
            }
        }
        return *at == '\0';
    }

private:
    const char* text_;
};

/// The attributes of one element, names as they stand in the file.
class XmlAttributes {
public:
    /// Names and values in turn, a null at the end.
    explicit XmlAttributes(const char** entries) : entries_(entries) {}

    std::optional<std::string_view> value(std::string_view name) const {
        return valueWhere([name](XmlName other) { return other == name; });
    }
    /// The value of the first attribute whose name fits.
    template <typename Fits>
    std::optional<std::string_view> valueWhere(const Fits& fits) const {
        for (const char** entry = entries_; *entry != nullptr; entry += 2) {
            if (fits(XmlName(entry[0]))) {
                return entry[1];
            }
        }
        return std::nullopt;
    }

private:
    const char** entries_;
};

/// What a document's elements are handed to, in the order of the file.
///
/// Text may come in several stretches.
class XmlEvents {
public:
    virtual ~XmlEvents() = default;
    virtual void startElement(XmlName name, const XmlAttributes& attributes) = 0;
    virtual void characters(std::string_view) {}
    virtual void endElement(XmlName) {}

    /// Why the document is not read on; empty while it is.
    const std::string& refusal() const { return refusal_; }

protected:
    /// Ends the reading of the document as a failure.
    void refuse(std::string why) { refusal_ = std::move(why); }

private:
    std::string refusal_;
};

/// Reads a document from end to end.
///
/// Failure    refused by the taker of its events, not well-formed, nested hundreds of elements deep, or with a document type
///            declaration, which no workbook has and which could define entities without bound ->
///            what is wrong and where
[[nodiscard]] std::optional<std::string> parseXml(std::string_view document, XmlEvents& events);

}  // namespace sorvane
