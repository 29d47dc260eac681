#include "cleaning/ui/QuickCleanWindow.h"

#include "cleaning/CleanSysController.h"
#include "core/Texts.h"
#include "ui/ElidedText.h"
#include "ui/Theme.h"
#include "ui/WindowSystem.h"
#include "volumes/BubbleController.h"
#include "volumes/ui/BubbleWindow.h"
#include "volumes/ui/MAAttachedWindow.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace brightsweep {

namespace {

constexpr int windowWidth = 420;

// Lives as long as the controller: a report outlasts its window.
class ReportBubble : public QObject {
public:
    explicit ReportBubble(CleanSysController &controller) : QObject(&controller) {
        connect(&controller, &CleanSysController::showBubble, this,
                [this](const QStringList &lines, int, int index) {
                    const Bubble content{lines.value(0), lines.value(1)};
                    if (windowsPlaceThemselves())
                        m_window = showBubbleWindow(content, index);
                    else
                        BubbleController::showAsNotification(content);
                });
        connect(&controller, &CleanSysController::hideBubble, this, [this] { m_window.reset(); });
    }

private:
    std::unique_ptr<MAAttachedWindow> m_window;
};

class Screen : public QWidget {
public:
    explicit Screen(CleanSysController &controller) : m_controller(controller) {
        setObjectName(QStringLiteral("quickClean"));
        setWindowTitle(localizedText("QUICK_CLEAN"));
        setWindowFlags(Qt::Window | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint |
                       Qt::WindowCloseButtonHint);
        auto *const layout = new QVBoxLayout(this);
        layout->setContentsMargins(6 * theme::grid, 5 * theme::grid, 6 * theme::grid,
                                   5 * theme::grid);
        layout->setSpacing(3 * theme::grid);
        theme::keepFont(&fixedText, 15, true);
        fixedText.setObjectName(QStringLiteral("fixedText"));
        curFileName.setTextFormat(Qt::PlainText);
        curFileName.setProperty("secondary", true);
        curFileName.setObjectName(QStringLiteral("curFileName"));
        delProgress.setTextVisible(false);
        delProgress.setObjectName(QStringLiteral("delProgress"));
        cancelBtn.setText(localizedText("CANCEL"));
        cancelBtn.setObjectName(QStringLiteral("cancelBtn"));
        QSizePolicy policy = cancelBtn.sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        cancelBtn.setSizePolicy(policy);
        layout->addWidget(&fixedText);
        layout->addWidget(&delProgress);
        layout->addWidget(&curFileName);
        layout->addWidget(&cancelBtn, 0, Qt::AlignRight);
        theme::keep(this, [this] {
            setFixedWidth(theme::height(windowWidth));
            follow();
        });
        connect(&cancelBtn, &QPushButton::clicked, &m_controller,
                &CleanSysController::stopFastClean);
        connect(&m_controller, &CleanSysController::changed, this, &Screen::follow);
        connect(&m_controller, &CleanSysController::showWindow, this, &Screen::comeForward);
    }

    void comeForward() {
        follow();
        adjustSize();
        if (const QScreen *const place = screen())
            move(place->availableGeometry().center() - rect().center());
        showInFront(*this, {});
    }

protected:
    // Closing stops the run, as the button does.
    void closeEvent(QCloseEvent *event) override {
        m_controller.stopFastClean();
        QWidget::closeEvent(event);
    }

private:
    void follow() {
        fixedText.setText(localizedText(m_controller.showFixedText()));
        curFileName.setText(elidedText(curFileName.fontMetrics(), m_controller.curDeleteFile(),
                                       Qt::ElideMiddle,
                                       theme::height(windowWidth) - 12 * theme::grid));
        delProgress.setRange(0, m_controller.isIndeterminate() ? 0 : 100);
        delProgress.setValue(m_controller.progressPercent());
        cancelBtn.setVisible(!m_controller.isCancelBtnHidden());
    }

    CleanSysController &m_controller;
    QLabel fixedText{this};
    QProgressBar delProgress{this};
    QLabel curFileName{this};
    QPushButton cancelBtn{this};
};

class QuickCleanWindow : public CleanWindow {
public:
    QuickCleanWindow()
        : m_controller(new CleanSysController), m_screen(std::make_unique<Screen>(*m_controller)) {
        new ReportBubble(*m_controller);
    }
    ~QuickCleanWindow() override { close(); }

    void resetStatus() override {
        if (m_controller)
            m_controller->resetStatus();
    }
    void showWindow() override {
        if (!m_controller)
            return;
        if (m_controller->state() == CleanSysController::State::Idle)
            m_controller->windowDidLoad();
        else if (m_screen->isVisible())
            m_screen->comeForward();
    }
    void close() override {
        m_screen->hide();
        if (m_controller)
            m_controller->closeWindow();
    }

private:
    QPointer<CleanSysController> m_controller; // destroys itself when its run has ended
    std::unique_ptr<Screen> m_screen;
};

} // namespace

std::unique_ptr<CleanWindow> makeQuickCleanWindow() {
    return std::make_unique<QuickCleanWindow>();
}

} // namespace brightsweep
