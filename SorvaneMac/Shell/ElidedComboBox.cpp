#include "SorvaneMac/Shell/ElidedComboBox.h"

#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace sorvane {

void ElidedComboBox::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    if (currentIndex() < 0 && !placeholderText().isEmpty()) {
        option.currentText = placeholderText();
        option.palette.setBrush(QPalette::ButtonText, option.palette.placeholderText());
    }
    const int room =
        style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
            .width();
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, room);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace sorvane
