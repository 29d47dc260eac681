#include "app/ui/AboutPanel.h"

#include "core/Texts.h"
#include "diskusage/ui/ChartCanvasChoice.h"
#include "foundation/Identity.h"
#include "ui/ImageProvider.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int imageSide = 96;
constexpr int textWidth = 300;

} // namespace

AboutPanel::AboutPanel(QWidget *parent) : QDialog(parent) {
    setObjectName(QStringLiteral("about"));
    setWindowTitle(localizedText("ABOUT_TITLE"));
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(10 * theme::grid, 8 * theme::grid, 10 * theme::grid,
                               6 * theme::grid);
    layout->setSpacing(theme::grid);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto *const image = new QLabel(this);
    image->setPixmap(pixmapNamed(QStringLiteral("logo-128x128.icns"), {imageSide, imageSide},
                                 devicePixelRatioF()));
    layout->addWidget(image, 0, Qt::AlignHCenter);
    layout->addSpacing(3 * theme::grid);

    const auto addLine = [&](const QString &text, double size, bool bold, bool isSecondary) {
        auto *const label = new QLabel(text, this);
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignCenter);
        label->setWordWrap(true);
        theme::keepFont(label, size, bold);
        theme::keepSize(label, textWidth, 0);
        label->setProperty("secondary", isSecondary);
        layout->addWidget(label, 0, Qt::AlignHCenter);
    };
    addLine(QStringLiteral("Brightsweep"), 20, true, false);
    addLine(localizedText("ABOUT_VERSION").arg(QLatin1String(programVersion)), 12, false, true);
    layout->addSpacing(3 * theme::grid);
    addLine(localizedText("ABOUT_TEXT"), 12, false, false);
    addLine(localizedText("ABOUT_CHART").arg(ChartCanvasChoice::shared().name()), 11, false, true);
    layout->addSpacing(5 * theme::grid);

    auto *const close = new QPushButton(localizedText("CLOSE"), this);
    close->setObjectName(QStringLiteral("about.close"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::close);
    layout->addWidget(close, 0, Qt::AlignHCenter);
}

} // namespace brightsweep
