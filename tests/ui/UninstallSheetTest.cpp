#include "uninstall/ui/UninstallSheet.h"
#include "platform/Platform.h"
#include "support/FakeApplicationSource.h"
#include "support/WaitUntil.h"
#include "uninstall/UninstallAppsController.h"

#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

TEST(UninstallSheet, IsNoWiderForALongName) {
    auto source = std::make_unique<FakeApplicationSource>(ApplicationKind::Package);
    for (const std::string &name : {std::string("i"), std::string(255, 'W')}) {
        InstalledApplication application;
        application.key = application.name = name;
        application.ids = {name};
        application.path = "/usr/bin/" + name;
        source->installed.push_back(application);
    }
    Platform::current().applications.clear();
    Platform::current().applications.push_back(std::move(source));
    UninstallAppsController page({});
    page.beginSearchApps();
    ASSERT_TRUE(eventually([&] { return page.isIdle(); }));
    page.selectAllList(true);
    QWidget window;
    window.resize(900, 600);
    window.show();
    int widths[2];
    for (const int row : {0, 1}) {
        page.cellClickOfView(row);
        auto *const details = UninstallDetailsSheet::show(page, {}, &window);
        widths[row] = details->sizeHint().width();
        EXPECT_TRUE(details->findChild<QLabel *>(QStringLiteral("uninstall.details.id"))
                        ->toolTip()
                        .contains(page.allApplications()[std::size_t(row)]->bundleID));
        delete details;
    }
    EXPECT_EQ(widths[0], widths[1]);
    page.uninstallButtonAction();
    ASSERT_TRUE(eventually([&] { return page.state() == UninstallAppsController::State::Asking; }));
    const auto *const sheet = UninstallSheet::show(page, QStringLiteral("?"), &window);
    QCoreApplication::processEvents();
    for (const QLabel *name : sheet->findChildren<QLabel *>(QStringLiteral("uninstall.sheet.name")))
        EXPECT_LT(name->mapTo(sheet, QPoint(name->width(), 0)).x(), sheet->width());
}

} // namespace
} // namespace brightsweep::test
