#include "platform/linux/SoftwareCentres.h"

#include "desktop/PrivateBus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

namespace brightsweep {
namespace {

TEST(SoftwareCentres, LookAgainOnceTheyAreTold) {
    test::PrivateBus bus;
    bus.start();
    ::setenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().c_str(), 1);
    tellSoftwareCentres(); // nobody is there
    {
        test::PlayedService service(bus, "/org/freedesktop/PackageKit");
        ASSERT_TRUE(service.takeName("org.freedesktop.PackageKit"));
        std::thread telling(tellSoftwareCentres);
        test::waitUntil([&] { return service.count("StateHasChanged") == 1; });
        telling.join();
        EXPECT_EQ(service.callsOf("StateHasChanged").constFirst().arguments(),
                  QVariantList{QStringLiteral("cache-update")});
    }
    bus.stop();
    tellSoftwareCentres();
    ::unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
}

} // namespace
} // namespace brightsweep
