#include "support/TestRun.h"

#include "ui/Theme.h"

#include <QApplication>

#include <cstdlib>

// A program with widgets but no screen, in the look of the program. A test that wants a real screen
// starts one and sets QT_QPA_PLATFORM itself.
int main(int argc, char **argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    brightsweep::theme::apply(application);
    return brightsweep::test::runTests(argc, argv);
}
