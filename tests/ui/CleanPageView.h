#pragma once

#include "cleaning/CleanPage.h"
#include "cleaning/ui/CleanResultsPanel.h"
#include "cleaning/ui/ResultView.h"
#include "foundation/Paths.h"
#include "platform/Platform.h"
#include "support/FakeDesktop.h"
#include "support/TestEnvironment.h"
#include "ui/AlertSheet.h"

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace brightsweep::test {

/// The results panel over a scanned machine with 60 items among the user caches.
class CleanPageView : public testing::Test {
protected:
    void SetUp() override {
        Platform::current().workspace.reset(workspace);
        CleanPage::store("010000");
        TestTree home(TestEnvironment::current().home());
        for (int item = 0; item < 60; ++item)
            home.sparseFile(".cache/item " + std::to_string(100 + item), 1000);
        at = std::make_unique<CleanPage>();
        panel = std::make_unique<CleanResultsPanel>(at->page);
        panel->resize(900, 600);
        at->scan();
        panel->show();
        panel->activateWindow();
        outline = panel->findChild<OutlineView *>();
        QApplication::processEvents();
        outline->setFocus();
        outline->sortByColumn(CleanOutlineModel::NameColumn, Qt::AscendingOrder);
        outline->expand(group());
    }
    QAbstractItemModel &model() { return *outline->model(); }
    QModelIndex group(unsigned category = 1) { return at->group(category); }
    QModelIndex leaf(int row, unsigned category = 1) {
        return model().index(row, 0, group(category));
    }
    static std::string nameOf(const QModelIndex &row) {
        const auto path = paths::fromVariant(row.data(CleanOutlineModel::PathRole));
        return std::string(paths::lastComponent(path));
    }
    std::size_t ticked() { return at->page.selectCount2Clean(); }
    template <typename Widget>
    Widget *find(const char *name) {
        return panel->findChild<Widget *>(QLatin1String(name));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : outline, key,
                        modifiers);
    }
    void filter(const char *text) {
        find<QLineEdit>("clean.filter")->setText(QLatin1String(text));
        auto &narrowed = at->page.outline().model();
        waitUntil([&] { return narrowed.filter() == QLatin1String(text); });
    }
    AlertSheet *sheet() { return panel->findChild<AlertSheet *>(); }
    void answer(const char *name) {
        const QPointer<AlertSheet> asked = sheet();
        ASSERT_TRUE(asked);
        asked->findChild<QPushButton *>(QStringLiteral("alert.") + QLatin1String(name))->click();
        waitUntil([&] { return !asked || !asked->isVisible(); });
    }
    std::vector<std::string> gone() {
        std::vector<std::string> lines;
        for (const std::string &line : changes(before, at->machine.state()))
            lines.push_back(line.substr(line.rfind('/') + 1));
        return lines;
    }

    FakeWorkspace *workspace = new FakeWorkspace;
    std::unique_ptr<CleanPage> at;
    std::unique_ptr<CleanResultsPanel> panel;
    OutlineView *outline = nullptr;
    std::map<std::string, std::string> before;
};

} // namespace brightsweep::test
