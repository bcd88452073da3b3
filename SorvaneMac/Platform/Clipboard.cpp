#include "SorvaneMac/Platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

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

}  // namespace sorvane::Clipboard
