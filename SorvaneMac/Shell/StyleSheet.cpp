#include "SorvaneMac/Shell/StyleSheet.h"

#include <QRegularExpression>

#include "SorvaneMac/Shell/Theme.h"

namespace sorvane {

namespace {

/// `@name` is a colour, `13px` a length of the design, `#icons` the folder of pictures.
constexpr auto sheet = R"(
QWidget { color: @text; }
QMainWindow, QDialog, QMessageBox, QWidget[ground="true"] { background: @ground; }
QToolTip { background: @card; color: @text; border: 1px solid @border; padding: 4px; }
QLabel { background: transparent; }
QLabel[role="pageTitle"] { font-size: 21px; font-weight: 700; }
QLabel[role="startTitle"] { font-size: 27px; font-weight: 700; }
QLabel[role="cardTitle"] { font-size: 14px; font-weight: 600; }
QLabel[role="quiet"] { color: @quietText; }
QLabel[role="small"] { color: @quietText; font-size: 12px; }
QLabel[role="heading"] { color: @quietText; font-size: 12px; font-weight: 600; }
QLabel[role="strong"] { font-weight: 600; }
QLabel[role="warning"] { color: @caution; font-size: 12px; }
QLabel[role="caution"] { color: @caution; background: @cautionGround; border-radius: 6px;
    padding: 7px 11px; }
QLabel[role="error"] { color: @violated; }
QLabel[role="tileValue"] { font-size: 22px; font-weight: 600; }
QLabel[pill="met"] { color: @met; background: @metGround; }
QLabel[pill="caution"] { color: @caution; background: @cautionGround; }
QLabel[pill="violated"] { color: @violated; background: @violatedGround; }
QLabel[pill="unavailable"] { color: @unavailable; background: @unavailableGround; }
QLabel[pill] { border-radius: 9px; padding: 2px 9px; font-size: 12px; font-weight: 600; }

QFrame[card="true"] { background: @card; border: 1px solid @border; border-radius: 8px; }
QFrame[banner="true"] { background: @violatedGround; border: none;
    border-bottom: 1px solid @violated; }
QFrame[bar="true"] { background: @ground; border: none; border-top: 1px solid @border; }
QFrame[line="true"] { background: @border; border: none; max-height: 1px; min-height: 1px; }
QFrame[dropZone="true"] { background: @card; border: 2px dashed @strongBorder; border-radius: 8px; }

QMenuBar { background: @sidebar; border-bottom: 1px solid @border; padding: 2px 6px; }
QMenuBar::item { background: transparent; padding: 4px 9px; border-radius: 4px; }
QMenuBar::item:selected { background: @accentGround; }
QMenu { background: @card; border: 1px solid @border; padding: 4px; }
QMenu::item { padding: 5px 24px 5px 20px; border-radius: 4px; }
QMenu::item:selected { background: @accentGround; color: @text; }
QMenu::item:disabled { color: @strongBorder; }
QMenu::separator { height: 1px; background: @border; margin: 4px 8px; }
QStatusBar { background: @sidebar; border-top: 1px solid @border; }
QStatusBar::item { border: none; }
QStatusBar QLabel { color: @quietText; font-size: 12px; padding: 2px 5px; }
QSplitter::handle { background: @border; }

QWidget[sidebar="true"] { background: @sidebar; }
QListView[navigation="true"] { background: @sidebar; border: none; outline: none; }
QWidget[inspector="true"] { background: @card; }
QScrollArea, QScrollArea > QWidget > QWidget { background: transparent; border: none; }

QScrollArea:focus { border: 1px solid @accent; }

QPushButton { background: @card; border: 1px solid @strongBorder; border-radius: 6px;
    padding: 6px 13px; }
QPushButton:hover { background: @accentGround; }
QPushButton:pressed { background: @border; }
QPushButton:focus { border: 2px solid @accent; padding: 5px 12px; }
QPushButton:disabled { color: @strongBorder; border-color: @border; background: transparent; }
QPushButton[primary="true"] { background: @accent; color: @onAccent; border-color: @accent;
    font-weight: 600; }
QPushButton[primary="true"]:hover { background: @accentPressed; border-color: @accentPressed; }
QPushButton[primary="true"]:focus { border: 2px solid @text; }
QPushButton[primary="true"]:disabled { background: @unavailableGround; color: @quietText;
    border-color: @unavailableGround; }
QPushButton::menu-indicator { image: url(#icons/chevron.svg); width: 10px;
    subcontrol-position: right center; subcontrol-origin: padding; right: 8px; }
QPushButton[hasMenu="true"] { padding-right: 26px; }
QPushButton[link="true"] { background: transparent; border: 1px solid transparent; color: @accent;
    padding: 2px 4px; }
QPushButton[link="true"]:hover { text-decoration: underline; }
QPushButton[link="true"]:focus { border: 2px solid @accent; padding: 1px 3px; }
QPushButton[link="true"]:disabled { color: @strongBorder; }
QPushButton[tool="true"] { padding: 4px 9px; min-width: 16px; }
QPushButton[tool="true"]:focus { padding: 3px 8px; }
QPushButton[tool="true"]:checked { background: @accentGround; border-color: @accent; }
QPushButton[tab="true"] { background: transparent; border: none; border-radius: 0;
    border-bottom: 2px solid transparent; padding: 9px 4px; color: @quietText; }
QPushButton[tab="true"]:hover { color: @text; }
QPushButton[tab="true"]:checked { color: @accent; font-weight: 600;
    border-bottom: 2px solid @accent; }
QPushButton[tab="true"]:focus { background: @accentGround; }

QLineEdit, QPlainTextEdit, QComboBox, QSpinBox, QDoubleSpinBox { background: @field;
    border: 1px solid @strongBorder; border-radius: 6px; padding: 5px 8px;
    selection-background-color: @accent; selection-color: @onAccent; }
QLineEdit:focus, QPlainTextEdit:focus, QComboBox:focus, QSpinBox:focus, QDoubleSpinBox:focus {
    border: 2px solid @accent; padding: 4px 7px; }
QLineEdit:disabled, QComboBox:disabled, QSpinBox:disabled { color: @strongBorder;
    border-color: @border; }
QTableView QLineEdit, QTableView QComboBox { border-radius: 0; padding: 0 4px; }
QComboBox QLineEdit { border: none; padding: 0; margin-left: -4px; background: transparent; }
QComboBox QLineEdit:focus { border: none; padding: 0; }
QAbstractScrollArea::corner { background: transparent; border: none; }
QComboBox { padding-right: 24px; }
QComboBox:focus { padding-right: 23px; }
QComboBox::drop-down { border: none; width: 24px; }
QComboBox::down-arrow { image: url(#icons/chevron.svg); width: 10px; height: 10px; }
QComboBox QAbstractItemView { background: @card; border: 1px solid @strongBorder;
    selection-background-color: @accentGround; selection-color: @text; outline: none; }
QSpinBox::up-button, QDoubleSpinBox::up-button { border: none; width: 20px;
    subcontrol-position: top right; }
QSpinBox::down-button, QDoubleSpinBox::down-button { border: none; width: 20px;
    subcontrol-position: bottom right; }
QSpinBox::up-arrow, QDoubleSpinBox::up-arrow { image: url(#icons/chevron-up.svg); width: 9px;
    height: 9px; }
QSpinBox::down-arrow, QDoubleSpinBox::down-arrow { image: url(#icons/chevron.svg); width: 9px;
    height: 9px; }
QCheckBox { spacing: 8px; padding: 3px; border-radius: 4px; border: 1px solid transparent; }
QCheckBox:focus { border: 1px solid @accent; }
QCheckBox::indicator { width: 14px; height: 14px; border: 1px solid @strongBorder;
    border-radius: 4px; background: @field; }
QCheckBox::indicator:checked { background: @accent; border-color: @accent;
    image: url(#icons/check.svg); }
QCheckBox:disabled { color: @strongBorder; }
QSlider { min-height: 22px; }
QSlider::groove:horizontal { height: 4px; background: @border; border-radius: 2px; }
QSlider::sub-page:horizontal { background: @accent; border-radius: 2px; }
QSlider::handle:horizontal { width: 14px; height: 14px; margin: -6px 0; border-radius: 8px;
    border: 2px solid @accent; background: @card; }
QSlider::handle:horizontal:focus { background: @accent; }

QListView, QTableView, QTextEdit { background: @card; border: 1px solid @border;
    border-radius: 6px; selection-background-color: @accentGround; selection-color: @text; }
QListView:focus, QTableView:focus { border: 1px solid @accent; }
QListView[navigation="true"]:focus { border: none; }
QTableView { gridline-color: @border; border-radius: 0; }
QHeaderView { background: @sidebar; border: none; }
QHeaderView::section { background: @sidebar; color: @quietText; border: none;
    border-right: 1px solid @border; border-bottom: 1px solid @border; padding: 5px 8px; }
QTableCornerButton::section { background: @sidebar; border: none; }

QScrollBar:vertical { background: transparent; width: 10px; margin: 0; }
QScrollBar:horizontal { background: transparent; height: 10px; margin: 0; }
QScrollBar::handle { background: @scrollHandle; border-radius: 3px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 28px; }
QScrollBar::handle:horizontal { min-width: 28px; }
QScrollBar::handle:hover { background: @quietText; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
)";

struct NamedColor {
    const char* name;
    QColor ThemeColors::*color;
};

/// A name that begins with another stands before it.
constexpr NamedColor namedColors[] = {
    {"@ground", &ThemeColors::ground},
    {"@sidebar", &ThemeColors::sidebar},
    {"@card", &ThemeColors::card},
    {"@field", &ThemeColors::field},
    {"@border", &ThemeColors::border},
    {"@scrollHandle", &ThemeColors::scrollHandle},
    {"@strongBorder", &ThemeColors::strongBorder},
    {"@text", &ThemeColors::text},
    {"@quietText", &ThemeColors::quietText},
    {"@accentPressed", &ThemeColors::accentPressed},
    {"@accentGround", &ThemeColors::accentGround},
    {"@accent", &ThemeColors::accent},
    {"@onAccent", &ThemeColors::onAccent},
    {"@metGround", &ThemeColors::metGround},
    {"@met", &ThemeColors::met},
    {"@cautionGround", &ThemeColors::cautionGround},
    {"@caution", &ThemeColors::caution},
    {"@violatedGround", &ThemeColors::violatedGround},
    {"@violated", &ThemeColors::violated},
    {"@unavailableGround", &ThemeColors::unavailableGround},
    {"@unavailable", &ThemeColors::unavailable},
};

void scaleLengths(QString& text) {
    static const QRegularExpression length(R"((\d+)px)");
    QString scaled;
    qsizetype end = 0;
    for (auto matches = length.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        scaled += text.mid(end, match.capturedStart() - end);
        const int design = match.captured(1).toInt();
        // A hairline stays one.
        scaled += QString::number(design <= 1 ? design : Theme::px(design)) + "px";
        end = match.capturedEnd();
    }
    text = scaled + text.mid(end);
}

}  // namespace

QString styleSheet(const ThemeColors& colors, const QString& iconSet) {
    QString text = QString::fromLatin1(sheet);
    for (const NamedColor& named : namedColors) {
        text.replace(named.name, (colors.*named.color).name());
    }
    text.replace("#icons", ":/sorvane/" + iconSet);
    scaleLengths(text);
    return text;
}

}  // namespace sorvane
