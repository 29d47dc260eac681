#include "support/TestRun.h"

#include <QCoreApplication>

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    return brightsweep::test::runTests(argc, argv);
}
