#include "SorvaneMac/Platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include "SorvaneMac/Platform/FileDialogs.h"

namespace sorvane::Clipboard {

void setText(const QString& text) {
    QGuiApplication::clipboard()->setText(text);
}

void setRichText(const QString& html, const QString& plainText) {
    auto* both = new QMimeData;
    both->setHtml(html);
    both->setText(plainText);
    QGuiApplication::clipboard()->setMimeData(both);
}

QString text() {
    return QGuiApplication::clipboard()->text();
}

std::optional<std::filesystem::path> file() {
    for (const QUrl& url : QGuiApplication::clipboard()->mimeData()->urls()) {
        if (url.isLocalFile()) {
            return toPath(url.toLocalFile());
        }
    }
    return std::nullopt;
}

}  // namespace sorvane::Clipboard
