#include "ui/StyleSheet.h"

#include "ui/Theme.h"

#include <QHash>

namespace brightsweep::theme {
namespace {

// @name stands for a colour or a measure. A focus ring is drawn inside the margin that every
// focusable widget keeps for it, so that nothing moves when the focus does.
constexpr char sheet[] = R"(
* { outline: none; }
QWidget { color: @text; }
QMainWindow, QDialog, QStackedWidget { background: @window; }
QToolTip { background: @raised; color: @text; border: 1px solid @edge; padding: 4px 8px; }

QPushButton, QToolButton {
  background: @raised; color: @text; border: 2px solid @buttonEdge; border-radius: @radius;
  padding: 4px 16px; min-height: @control;
}
QToolButton { padding: 4px 8px; }
QPushButton:hover, QToolButton:hover { background: @hover; border-color: @hoverEdge; }
QPushButton:pressed, QToolButton:pressed, QToolButton:checked { background: @pressed; }
QPushButton:disabled, QToolButton:disabled { color: @faint; border-color: @disabledEdge; }
QPushButton[primary="true"] { background: @accent; color: @onAccent; border-color: @accent; font-weight: bold; }
QPushButton[primary="true"]:hover { background: @accentHover; border-color: @accentHover; }
QPushButton[primary="true"]:pressed { background: @accentPressed; border-color: @accentPressed; }
QPushButton[primary="true"]:disabled { background: @raised; color: @faint; border-color: @disabledEdge; }
QPushButton[danger="true"] { color: @danger; }
QPushButton[danger="true"]:hover { background: @danger; color: @onDanger; border-color: @danger; }
QPushButton[flat="true"], QToolButton[flat="true"] { background: transparent; border-color: transparent; }
QPushButton[flat="true"]:hover, QToolButton[flat="true"]:hover { background: @hover; }
QPushButton:focus, QToolButton:focus { border-color: @focus; }
QPushButton[primary="true"]:focus { border-color: @text; }
QToolButton::menu-indicator { image: none; }

QToolBar { background: @raised; border: none; border-bottom: 1px solid @hairline; spacing: 4px; padding: 4px 8px; }
QToolBar QToolButton { background: transparent; border-color: transparent; padding: 4px 12px; }
QToolBar QToolButton:hover { background: @hover; }
QToolBar QToolButton:checked { background: @window; border-color: @checkedEdge; color: @accent; }
QToolBar QToolButton:focus { border-color: @focus; }

QCheckBox, QRadioButton { spacing: 8px; padding: 4px; border: 2px solid transparent; border-radius: 4px; }
QCheckBox:focus, QRadioButton:focus { border-color: @focus; }
QCheckBox:disabled, QRadioButton:disabled { color: @faint; }
QCheckBox::indicator, QAbstractItemView::indicator { width: @mark; height: @mark; }
QCheckBox::indicator:unchecked, QAbstractItemView::indicator:unchecked { image: url(:/images/option_no.svg); }
QCheckBox::indicator:unchecked:disabled, QAbstractItemView::indicator:unchecked:disabled { image: url(:/images/option_no_d.svg); }
QCheckBox::indicator:indeterminate, QAbstractItemView::indicator:indeterminate { image: url(:/images/option_a.svg); }
QCheckBox::indicator:indeterminate:disabled, QAbstractItemView::indicator:indeterminate:disabled { image: url(:/images/option_a_d.svg); }
QCheckBox::indicator:checked, QAbstractItemView::indicator:checked { image: url(:/images/option_yes.svg); }
QCheckBox::indicator:checked:disabled, QAbstractItemView::indicator:checked:disabled { image: url(:/images/option_yes_d.svg); }
QRadioButton::indicator { width: @mark; height: @mark; }
QRadioButton::indicator:unchecked { image: url(:/images/radio_no.svg); }
QRadioButton::indicator:unchecked:disabled { image: url(:/images/radio_no_d.svg); }
QRadioButton::indicator:checked { image: url(:/images/radio_yes.svg); }
QRadioButton::indicator:checked:disabled { image: url(:/images/radio_yes_d.svg); }

QAbstractItemView {
  background: @window; alternate-background-color: @window; color: @text; border: 2px solid transparent;
  border-radius: @radius; selection-background-color: @selection; selection-color: @text; show-decoration-selected: 1;
}
QAbstractItemView[keyboardFocus="true"]:focus { border-color: @focus; }
QAbstractItemView::item { min-height: @row; padding: 0 8px; border: none; }
QAbstractItemView::item:hover { background: @hover; }
QAbstractItemView::item:selected { background: @selection; color: @text; }
QTreeView::branch { background: transparent; }
QTreeView::branch:selected { background: @selection; }
QTreeView::branch:has-children:closed { image: url(:/images/arrow_right.svg); }
QTreeView::branch:has-children:open { image: url(:/images/arrow_down.svg); }
QHeaderView { background: @window; border: none; }
QHeaderView::section {
  background: @window; color: @secondary; border: none; border-bottom: 1px solid @hairline; padding: 4px 8px;
  min-height: @header;
}
QHeaderView::section:hover { color: @text; }
QHeaderView::down-arrow { image: url(:/images/arrow_down.svg); width: @arrow; height: @arrow; }
QHeaderView::up-arrow { image: url(:/images/arrow_up.svg); width: @arrow; height: @arrow; }
QTableCornerButton::section { background: @window; border: none; }

QScrollBar { background: transparent; border: none; margin: 0; }
QScrollBar:vertical { width: 10px; }
QScrollBar:horizontal { height: 10px; }
QScrollBar::handle { background: @handle; border-radius: 3px; margin: 2px; }
QScrollBar::handle:vertical { min-height: 32px; }
QScrollBar::handle:horizontal { min-width: 32px; }
QScrollBar::handle:hover { background: @handleHover; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
QAbstractScrollArea::corner { background: transparent; }

QLineEdit, QAbstractSpinBox, QComboBox, QPlainTextEdit, QTextEdit {
  background: @field; color: @text; border: 2px solid @fieldEdge; border-radius: 6px; padding: 2px 8px;
  selection-background-color: @selection; selection-color: @text;
}
QLineEdit, QAbstractSpinBox, QComboBox { min-height: @control; }
QLineEdit:focus, QAbstractSpinBox:focus, QComboBox:focus, QPlainTextEdit:focus, QTextEdit:focus { border-color: @focus; }
QLineEdit QToolButton { background: transparent; border: none; padding: 0; min-height: 0; }
QLineEdit:disabled, QAbstractSpinBox:disabled, QComboBox:disabled { color: @faint; }
QAbstractSpinBox::up-button, QAbstractSpinBox::down-button { background: transparent; border: none; width: 20px; }
QAbstractSpinBox::up-arrow { image: url(:/images/arrow_up.svg); width: 10px; height: 10px; }
QAbstractSpinBox::down-arrow { image: url(:/images/arrow_down.svg); width: 10px; height: 10px; }
QComboBox::drop-down { border: none; width: 24px; }
QComboBox::down-arrow { image: url(:/images/arrow_down.svg); width: 12px; height: 12px; }
QComboBox QAbstractItemView { background: @raised; border: 1px solid @edge; }

QSlider { min-height: 24px; border: 2px solid transparent; border-radius: 6px; }
QSlider:focus { border-color: @focus; }
QSlider::groove:horizontal { background: @track; height: 4px; border-radius: 2px; }
QSlider::sub-page:horizontal { background: @accent; border-radius: 2px; }
QSlider::sub-page:horizontal:disabled { background: @faint; }
QSlider::handle:horizontal { background: @handleFace; width: 16px; height: 16px; margin: -6px 0; border-radius: 8px; }
QSlider::handle:horizontal:hover { background: @accent; }
QProgressBar { background: @track; border: none; border-radius: 3px; max-height: 6px; min-height: 6px; text-align: center; }
QProgressBar::chunk { background: @accent; border-radius: 3px; }

QMenu { background: @raised; border: 1px solid @edge; padding: 4px; }
QMenu::item { padding: 6px 24px 6px 12px; border-radius: 4px; min-height: @menuItem; }
QMenu::item:selected { background: @selection; }
QMenu::item:disabled { color: @faint; background: transparent; }
QMenu::separator { background: @hairline; height: 1px; margin: 4px 8px; }
QMenu::indicator { width: 16px; height: 16px; left: 4px; }
QMenu::indicator:checked { image: url(:/images/tick.svg); }

QTabBar::tab { background: transparent; color: @secondary; padding: 8px 16px; border-bottom: 2px solid transparent; }
QTabBar::tab:selected { color: @text; border-bottom-color: @accent; }
QTabWidget::pane { border: none; }
QSplitter::handle { background: @hairline; }
QGroupBox { border: 1px solid @hairline; border-radius: @radius; margin-top: 16px; padding: 16px; }
QGroupBox::title { subcontrol-origin: margin; left: 12px; color: @secondary; }
QFrame[card="true"] { background: @raised; border: 1px solid @hairline; border-radius: @radius; }
QFrame[hairline="true"] { background: @hairline; }
QDialog[sheet="true"] { background: @raised; border: 1px solid @edge; border-radius: @radius; }
QLabel { background: transparent; }
QLabel[secondary="true"] { color: @secondary; }
QLabel[number="true"] { color: @accent; font-weight: bold; }
QLabel[danger="true"] { color: @danger; }
)";

QString css(const QColor &color) {
    return QStringLiteral("rgba(%1, %2, %3, %4)")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.alpha());
}

QString pixels(int stated) {
    return QString::number(height(stated)) + QStringLiteral("px");
}

QHash<QString, QString> values() {
    const bool contrast = appearance().highContrast;
    const auto either = [contrast](const QColor &usual, const QColor &inContrast) {
        return css(contrast ? inContrast : usual);
    };
    const QColor white(Qt::white);
    const QColor black(Qt::black);
    const QColor grey(160, 160, 160);
    const QColor none(0, 0, 0, 0);
    return {
        {QStringLiteral("window"), css(window())},
        {QStringLiteral("raised"), css(raised())},
        {QStringLiteral("hover"), css(hover())},
        {QStringLiteral("hairline"), css(hairline())},
        {QStringLiteral("text"), css(text())},
        {QStringLiteral("secondary"), css(secondary())},
        {QStringLiteral("accent"), css(accent())},
        {QStringLiteral("selection"), css(selection())},
        {QStringLiteral("danger"), css(danger())},
        {QStringLiteral("focus"), css(accent())},
        {QStringLiteral("onAccent"), either(QColor(39, 41, 51), black)},
        {QStringLiteral("onDanger"), either(white, black)},
        {QStringLiteral("accentHover"), either(QColor(255, 224, 77), grey)},
        {QStringLiteral("accentPressed"), either(QColor(224, 187, 0), grey)},
        {QStringLiteral("pressed"), either(QColor(34, 36, 45), grey)},
        {QStringLiteral("faint"), either(QColor(255, 255, 255, 90), grey)},
        {QStringLiteral("edge"), either(QColor(85, 88, 102), white)},
        {QStringLiteral("buttonEdge"), either(QColor(66, 70, 86), white)},
        {QStringLiteral("hoverEdge"), either(QColor(85, 88, 102), white)},
        {QStringLiteral("disabledEdge"), either(QColor(54, 57, 70), grey)},
        {QStringLiteral("checkedEdge"), either(none, white)},
        {QStringLiteral("field"), either(QColor(31, 33, 41), black)},
        {QStringLiteral("fieldEdge"), either(QColor(66, 70, 86), white)},
        {QStringLiteral("track"), either(QColor(70, 74, 90), QColor(90, 90, 90))},
        {QStringLiteral("handle"), either(QColor(94, 99, 120), white)},
        {QStringLiteral("handleHover"), either(QColor(130, 136, 160), white)},
        {QStringLiteral("handleFace"), css(white)},
        {QStringLiteral("radius"), QString::number(radius) + QStringLiteral("px")},
        {QStringLiteral("row"), pixels(rowHeight)},
        {QStringLiteral("control"), pixels(20)},
        {QStringLiteral("menuItem"), pixels(16)},
        {QStringLiteral("header"), pixels(20)},
        {QStringLiteral("mark"), pixels(18)},
        {QStringLiteral("arrow"), pixels(12)},
    };
}

} // namespace

QString styleSheet() {
    const auto known = values();
    const QString source = QString::fromLatin1(sheet);
    QString result;
    for (qsizetype at = 0; at < source.size();) {
        const auto mark = source.indexOf(QLatin1Char('@'), at);
        if (mark < 0)
            return result + source.mid(at);
        auto end = mark + 1;
        while (end < source.size() && source[end].isLetter())
            ++end;
        result += source.mid(at, mark - at) + known.value(source.mid(mark + 1, end - mark - 1));
        at = end;
    }
    return result;
}

} // namespace brightsweep::theme
