#pragma once

#include "cleaning/CleanCategories.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/ScanViewController.h"
#include "cleaning/V3MainListView.h"
#include "preferences/PreferenceViewController.h"
#include "support/CleanableMachine.h"
#include "support/ManualClock.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace brightsweep::test {

/// A machine with items in all six categories, and the page over it, with a clock of its own.
class CleanPage {
public:
    CleanPage() {
        QObject::connect(&page, &NewMainViewController::displayPanel, &page,
                         [this](const QString &panel) { heard.push_back(panel.toStdString()); });
        QObject::connect(&page, &NewMainViewController::askDownloads, &page,
                         [this] { heard.push_back("downloads?"); });
        QObject::connect(&page, &NewMainViewController::askDownloadsAlone, &page,
                         [this] { heard.push_back("downloads alone?"); });
        QObject::connect(&page, &NewMainViewController::showAlertForPrivilegesToClean, &page,
                         [this] { heard.push_back("privileges!"); });
    }

    void waitFor(NewMainViewController::State state) {
        waitUntil([&] { return page.state() == state; });
    }
    void scan() {
        page.clickScanBtn();
        waitFor(NewMainViewController::State::Results);
    }
    /// Ticks exactly these categories, as clicks on the rows do.
    void tick(const std::set<unsigned> &categories) {
        for (unsigned index = 0; index < categoryCount; ++index) {
            if (page.row(index).isTicked() != categories.contains(index))
                page.row(index).checkBoxAction();
        }
    }
    /// The stored states of the categories, "012210".
    static std::string stored() { return getDefaultsValue().join(QString()).toStdString(); }
    static void store(const char *states) {
        for (unsigned index = 0; index < categoryCount; ++index)
            PreferenceViewController::setCategoryClicked(index, states[index] - '0');
    }
    std::string line() const { return page.controls().stateTextField.text.toStdString(); }
    QModelIndex group(unsigned category) {
        CleanOutlineModel &model = page.outline().model();
        for (int row = 0; row < model.rowCount(); ++row) {
            if (model.index(row, 0).data(CleanOutlineModel::CategoryRole) == category)
                return model.index(row, 0);
        }
        return {};
    }

    CleanableMachine machine;
    ManualClock clock;
    NewMainViewController page{{.clock = &clock}};
    std::vector<std::string> heard;
};

} // namespace brightsweep::test
