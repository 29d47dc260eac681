#include "duplicates/ui/DuplicatesProgressPanel.h"

#include "core/Texts.h"
#include "duplicates/SameFileDeleteViewController.h"
#include "foundation/Paths.h"
#include "ui/ElidedLabel.h"
#include "ui/ImageView.h"
#include "ui/Theme.h"
#include "ui/effects/Animation.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int iconSide = 120;
constexpr int pathWidth = 560;

} // namespace

DuplicatesProgressPanel::DuplicatesProgressPanel(SameFileDeleteViewController &controller,
                                                 QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_folder(new QLabel(this)),
      nameTextStr(new ElidedLabel(Qt::ElideMiddle, this)),
      imageView(new ImageView(QStringLiteral("folder.png"), this)),
      m_progress(new Animation(this)),
      stopScanBtn(new QPushButton(localizedText("STOP"), this)),
      stopScanText(new QLabel(localizedText("Stopping…"), this)) {
    theme::keepSize(imageView, iconSide, iconSide);
    m_folder->setObjectName(QStringLiteral("duplicates.folder"));
    theme::keepFont(m_folder, 18, true);
    for (QLabel *const label : {m_folder, nameTextStr, stopScanText}) {
        label->setTextFormat(Qt::PlainText);
        label->setAlignment(Qt::AlignCenter);
    }
    nameTextStr->setObjectName(QStringLiteral("duplicates.path"));
    nameTextStr->setProperty("secondary", true);
    theme::keep(this, [this] { nameTextStr->setFixedWidth(theme::height(pathWidth)); });
    stopScanText->setProperty("secondary", true);
    stopScanBtn->setObjectName(QStringLiteral("stopScanBtn"));
    stopScanBtn->setAutoDefault(true);
    m_progress->showStyle();

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 6 * theme::grid);
    layout->setSpacing(0);
    layout->addStretch(2);
    layout->addWidget(imageView, 0, Qt::AlignHCenter);
    layout->addSpacing(4 * theme::grid);
    layout->addWidget(m_folder, 0, Qt::AlignHCenter);
    layout->addSpacing(2 * theme::grid);
    layout->addWidget(nameTextStr, 0, Qt::AlignHCenter);
    layout->addSpacing(5 * theme::grid);
    layout->addWidget(m_progress, 0, Qt::AlignHCenter);
    layout->addSpacing(5 * theme::grid);
    layout->addWidget(stopScanBtn, 0, Qt::AlignHCenter);
    layout->addWidget(stopScanText, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    setFocusProxy(stopScanBtn);

    using Page = SameFileDeleteViewController;
    connect(stopScanBtn, &QPushButton::clicked, &controller, &Page::stopScanBtnClicked);
    connect(&controller, &Page::controlsChanged, this, &DuplicatesProgressPanel::follow);
    connect(&controller, &Page::stateChanged, this, &DuplicatesProgressPanel::follow);
    connect(&controller, &Page::baseNumberSetPrograss, m_progress,
            [this](int percent) { m_progress->baseNumberSetPrograss(std::uint64_t(percent)); });
    connect(&controller, &Page::pathShown, this, [this](const std::string &path) {
        if (m_controller.state() != Page::State::Searching &&
            m_controller.state() != Page::State::Stopping)
            return;
        nameTextStr->setText(paths::displayFromHome(path));
        imageView->setPixmap(m_icons.icon(path, false)
                                 .pixmap(QSize(theme::height(iconSide), theme::height(iconSide)),
                                         devicePixelRatioF()));
    });
    m_progress->baseNumberSetPrograss(5);
    follow();
}

QSize DuplicatesProgressPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void DuplicatesProgressPanel::follow() {
    const DuplicateControls &controls = m_controller.controls();
    using State = SameFileDeleteViewController::State;
    if (m_controller.state() == State::Searching)
        m_folder->setText(localizedText("DUP_SEARCHING").arg(m_controller.title()));
    // The keyboard stays here, so that it goes on to the next panel.
    const bool isStopping = controls.stopScanText;
    QWidget *const shown = isStopping ? static_cast<QWidget *>(stopScanText) : stopScanBtn;
    QWidget *const hidden = isStopping ? static_cast<QWidget *>(stopScanBtn) : stopScanText;
    shown->show();
    if (window()->focusWidget() == hidden)
        shown->setFocus();
    hidden->hide();
    m_progress->setVisible(!controls.stopScanText);
}

} // namespace brightsweep
