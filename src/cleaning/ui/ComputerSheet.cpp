#include "cleaning/ui/ComputerSheet.h"

#include "cleaning/CustomComInfoView.h"
#include "core/Texts.h"
#include "ui/ImageView.h"
#include "ui/SheetShade.h"
#include "ui/Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace brightsweep {

namespace {

constexpr int imageSide = 24;
constexpr int valueWidth = 280;

QLabel *plainLabel(const QString &text, QWidget *parent) {
    auto *const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    theme::keepFont(label, 12);
    return label;
}

} // namespace

ComputerSheet::ComputerSheet(QWidget *window) : QDialog(window, Qt::Sheet) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("computer"));
    setProperty("sheet", true);
    shade(*this);
    setWindowTitle(localizedText("THIS_COMPUTER"));
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 5 * theme::grid);
    grid->setHorizontalSpacing(3 * theme::grid);
    grid->setVerticalSpacing(3 * theme::grid);
    const CustomComInfoView facts;
    int row = 0;
    for (const ComputerInfoCell &cell : facts.rows()) {
        auto *const image = new ImageView(cell.iconImage, this);
        theme::keepSize(image, imageSide, imageSide);
        auto *const title = plainLabel(localizedText(cell.titleText), this);
        title->setProperty("secondary", true);
        const bool isKnown = !cell.valueText.isEmpty();
        auto *const value =
            plainLabel(isKnown ? readersSize(cell.valueText) : localizedText("NOT_KNOWN"), this);
        value->setProperty("secondary", !isKnown);
        value->setWordWrap(true);
        theme::keepSize(value, valueWidth, 0);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        value->setAccessibleName(title->text() + QLatin1Char(' ') + value->text());
        grid->addWidget(image, row, 0);
        grid->addWidget(title, row, 1);
        grid->addWidget(value, row++, 2);
    }
    auto *const close = new QPushButton(localizedText("CLOSE"), this);
    close->setObjectName(QStringLiteral("computer.close"));
    close->setDefault(true);
    close->setFocus();
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    grid->addWidget(close, row, 2, Qt::AlignRight);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

} // namespace brightsweep
