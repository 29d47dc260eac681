// What the results panel shows of its controller.
#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/HiddenTicksNotice.h"
#include "cleaning/ui/LeftListView.h"
#include "cleaning/ui/ResultView.h"
#include "cleaning/ui/StyledLabel.h"
#include "core/Texts.h"
#include "ui/FilterField.h"
#include "ui/ImageView.h"
#include "ui/NoticeRow.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

namespace brightsweep {

void CleanResultsPanel::showEvent(QShowEvent *) {
    followHeading();
    expandFirst();
}

// Once after each scan; what the user opens and closes then is the user's.
void CleanResultsPanel::expandFirst() {
    if (!m_isNew || m_controller.state() != NewMainViewController::State::Results ||
        m_controller.outline().tree().groups().empty())
        return;
    m_isNew = false;
    for (CategoryView *const list : m_lists) {
        if (list)
            list->sortAgain();
    }
    m_outline->expandFirst();
}

// The keyboard stays in the list: a button that is disabled would hand it on to the toolbar, and a
// disabled list cannot take it.
void CleanResultsPanel::followState(NewMainViewController::State state) {
    using State = NewMainViewController::State;
    m_isNew = m_isNew || state == State::Scanning;
    if ((state == State::Warning || state == State::Cleaning) &&
        isAncestorOf(window()->focusWidget()))
        m_box->currentWidget()->setFocus();
    if (m_controller.controls().outlineEnabled)
        m_outline->setEnabled(true);
    followParts();
    followControls();
}

void CleanResultsPanel::followHeading() {
    const CleanHeading heading = m_controller.heading();
    m_headingImage->setImageName(heading.image);
    m_title->setText(heading.title);
    // What was freed stands once, in the line below.
    const bool isToldBelow =
        m_controller.selectRowNum() == 0 && m_controller.controls().stateTextField.isOutcome;
    m_description->setStyledText(isToldBelow ? m_controller.capacity() : heading.description);
}

void CleanResultsPanel::followParts() {
    const CleanPageParts parts = m_controller.parts();
    QWidget *page = m_outline;
    if (parts.box >= 0 && parts.box < int(m_lists.size())) {
        const unsigned category = unsigned(parts.box);
        CategoryView *&list = m_lists[category];
        if (!list) {
            list = new CategoryView(m_controller.list(category), m_box);
            m_box->addWidget(list);
        }
        const bool isEmpty = m_controller.list(category).rowCount() == 0 &&
                             m_controller.state() == NewMainViewController::State::Results;
        page = isEmpty ? m_outcome : list;
        if (isEmpty)
            followOutcome();
    } else if (parts.uninstallTextField) {
        page = m_uninstallNote;
    } else if (parts.diskSizeView) {
        page = m_volumeNote;
    } else if (m_controller.state() == NewMainViewController::State::Cleaning) {
        page = m_overview;
    } else if (m_controller.outline().tree().groups().empty()) {
        page = m_controller.outcome() == CleanOutcome::Cleaned ? m_overview : m_outcome;
        followOutcome();
    }
    m_filter->setVisible(page == m_outline);
    followNotice(page);
    if (m_box->currentWidget() == page)
        return;
    const bool hadFocus = m_box->isAncestorOf(focusWidget());
    m_box->setCurrentWidget(page);
    if (hadFocus)
        page->setFocus();
}

void CleanResultsPanel::followNotice(const QWidget *page) {
    const bool restarts = m_controller.needsRestart();
    const QString notice = m_controller.notice();
    m_notice->label()->setText(notice.isEmpty() ? localizedText("CLEAN_OUTDATED") : notice);
    m_noticeAct->setVisible(restarts || notice.isEmpty());
    m_noticeAct->setText(restarts ? localizedText("RESTART") : localizedText("Scan"));
    m_noticeAct->setEnabled(m_controller.state() == NewMainViewController::State::Results);
    m_notice->setVisible(restarts ? page != m_outcome
                                  : !notice.isEmpty() || m_controller.isOutdated());
}

void CleanResultsPanel::followOutcome() {
    const bool isStopped = m_controller.needsRestart();
    if (!isStopped && m_controller.parts().box >= 0) {
        m_outcomeTitle->setText(localizedText("CATEGORY_EMPTY"));
        m_outcomeText->setStyledText({localizedText("CATEGORY_EMPTY_TEXT"), 12, {}});
        m_outcomeAct->setText(localizedText("SHOW_OVERVIEW"));
        return;
    }
    m_outcomeTitle->setText(isStopped ? localizedText("SCAN_STOPPED")
                                      : localizedText("NOTHING_TO_CLEAN"));
    CleanStyledText words;
    words.text = isStopped ? localizedText(cleanPageTexts::restartText)
                           : localizedText("NOTHING_TO_CLEAN_WHY");
    m_outcomeText->setStyledText(words);
    m_outcomeAct->setText(isStopped ? localizedText("RESTART") : localizedText("BACK"));
}

void CleanResultsPanel::followControls() {
    const CleanPageControls &controls = m_controller.controls();
    followNotice(m_box->currentWidget());
    const auto show = [](QPushButton *button, const CleanPageControls::Button &state) {
        button->setEnabled(state.enabled);
        button->setVisible(!state.hidden);
    };
    show(cleanButton, controls.cleanButton);
    show(oneListCleanButton, controls.oneListCleanButton);
    show(m_back, controls.backButton);
    m_outline->setEnabled(controls.outlineEnabled);
    const bool hasLine = !controls.stateTextHidden;
    stateTextField->setStyledText(controls.stateTextField);
    stateTextField->setVisible(hasLine);
    // Every line ends with the size that it is about.
    const CleanStyledText &line = controls.stateTextField;
    m_sum->setText(line.accented.empty()
                       ? QString()
                       : line.text.mid(line.accented.back().start, line.accented.back().length));
    m_sum->setVisible(hasLine && !line.isOutcome);
    followHeading();
    m_freeSpace->setText(controls.freeSpaceLine);
    m_freeSpace->setVisible(!controls.freeSpaceLine.isEmpty());
    trashFileNumTF->setText(controls.trashFileNumTF);
    m_hiddenTicks->follow(m_box->currentWidget() == m_outline);
}

} // namespace brightsweep
