#include "SorvaneMac/Shell/ElidedComboBox.h"

#include <QStyleOptionComboBox>
#include <QStylePainter>

namespace sorvane {

void ElidedComboBox::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    const int room =
        style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this)
            .width();
    option.currentText = fontMetrics().elidedText(option.currentText, Qt::ElideRight, room);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace sorvane
