#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace sorvane {

inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string utf8(const QString& text) {
    return text.toStdString();
}

/// The first characters, at most so many units of UTF-16; none is cut in two.
inline QString leading(const QString& text, qsizetype most) {
    const bool isCut = text.size() > most;
    return text.left(isCut && text[most].isLowSurrogate() ? most - 1 : most);
}

}  // namespace sorvane
