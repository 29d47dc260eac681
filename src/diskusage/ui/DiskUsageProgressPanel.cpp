#include "diskusage/ui/DiskUsageProgressPanel.h"

#include "core/Texts.h"
#include "diskusage/DiskUsageAppController.h"
#include "diskusage/ui/ChartCanvasChoice.h"
#include "diskusage/ui/CustomOpenGLView.h"
#include "foundation/Paths.h"
#include "ui/ElidedLabel.h"
#include "ui/ImageView.h"
#include "ui/Theme.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int pictureSide = 120;
constexpr int barWidth = 360;

} // namespace

DiskUsageProgressPanel::DiskUsageProgressPanel(DiskUsageAppController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      m_chart(new CustomOpenGLView(controller.diskView(), this)),
      m_picture(new ImageView(QStringLiteral("start_disk_usage.png"), this)),
      m_folder(new ElidedLabel(Qt::ElideMiddle, this)),
      m_progress(new QProgressBar(this)),
      stopScanBtn(new QPushButton(localizedText("STOP"), this)),
      stopScanText(new QLabel(localizedText("Stopping…"), this)) {
    m_chart->setObjectName(QStringLiteral("usage.growing"));
    theme::keepSize(m_picture, pictureSide, pictureSide);
    m_folder->setObjectName(QStringLiteral("usage.folder"));
    m_folder->setTextFormat(Qt::PlainText);
    m_folder->setAlignment(Qt::AlignCenter);
    theme::keepFont(m_folder, 14, true);
    m_progress->setObjectName(QStringLiteral("usage.progress"));
    m_progress->setAccessibleName(localizedText("USAGE_PROGRESS"));
    m_progress->setTextVisible(false);
    theme::keep(m_progress, [this] { m_progress->setFixedWidth(theme::height(barWidth)); });
    stopScanBtn->setObjectName(QStringLiteral("stopScanBtn"));
    stopScanBtn->setAutoDefault(true);
    stopScanText->setProperty("secondary", true);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 4 * theme::grid);
    layout->setSpacing(3 * theme::grid);
    layout->addWidget(m_folder);
    layout->addWidget(m_chart, 1);
    layout->addWidget(m_picture, 1, Qt::AlignCenter);
    layout->addWidget(m_progress, 0, Qt::AlignHCenter);
    layout->addWidget(stopScanBtn, 0, Qt::AlignHCenter);
    layout->addWidget(stopScanText, 0, Qt::AlignHCenter);
    setFocusProxy(stopScanBtn);
    using Page = DiskUsageAppController;
    connect(stopScanBtn, &QPushButton::clicked, &controller, &Page::stopBtnClick);
    connect(&controller, &Page::stateChanged, this, &DiskUsageProgressPanel::follow);
    connect(&controller, &Page::progressChanged, this, &DiskUsageProgressPanel::followProgress);
    follow();
}

QSize DiskUsageProgressPanel::sizeHint() const {
    return theme::leastPanel().expandedTo(layout()->minimumSize());
}

void DiskUsageProgressPanel::showEvent(QShowEvent *) {
    if (m_controller.isChart())
        ChartCanvasChoice::shared().begin();
    m_chart->setGrowing(true);
    follow();
}

void DiskUsageProgressPanel::hideEvent(QHideEvent *) {
    m_chart->setGrowing(false);
}

void DiskUsageProgressPanel::follow() {
    const QString path = paths::displayFromHome(m_controller.scanPathStr());
    m_folder->setText(localizedText("USAGE_SCANNING").arg(path));
    m_chart->setVisible(m_controller.isChart());
    m_picture->setVisible(!m_controller.isChart());
    const bool isStopping = m_controller.state() == DiskUsageAppController::State::Stopping;
    // At the end of a scan the button stays, so that the keyboard goes on to the next panel.
    stopScanBtn->setVisible(!isStopping);
    stopScanText->setVisible(isStopping);
    followProgress();
}

void DiskUsageProgressPanel::followProgress() {
    const auto levels = m_controller.rootDirLevels();
    // Without a number yet, the bar says only that something goes on.
    m_progress->setRange(0, int(levels));
    m_progress->setValue(int(std::min(m_controller.levelsDone(), levels)));
}

} // namespace brightsweep
