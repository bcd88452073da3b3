#include "SorvaneMac/Shell/TableCopying.h"

#include "SorvaneMac/Platform/Clipboard.h"
#include "SorvaneMac/Report/ReportClipboard.h"
#include "SorvaneMac/Shell/QtText.h"

namespace sorvane {

void copyTable(std::string_view title, const ReportTable& table) {
    Clipboard::setRichText(qtText(ReportClipboard::html(title, table)),
                           qtText(ReportClipboard::plainText(table)));
}

QString plainText(const ReportTable& table) {
    return qtText(ReportClipboard::plainText(table));
}

}  // namespace sorvane
