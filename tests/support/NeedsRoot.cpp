#include "support/NeedsRoot.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace brightsweep::test {

void needRoot() {
    if (::geteuid() == 0)
        return;
    [] { GTEST_SKIP() << "needs root"; }();
    // GoogleTest takes this one for a result that it knows already.
    throw testing::AssertionException({testing::TestPartResult::kSkip, __FILE__, __LINE__, ""});
}

} // namespace brightsweep::test
