#include "removal/RemovalReason.h"

#include "linux/RemovalError.h"

#include <gtest/gtest.h>

namespace brightsweep {
namespace {

TEST(RemovalReason, TellsAVolumeInTheWayFromWhatIsBusy) {
    const struct {
        std::error_code error;
        const char *key;
    } rows[] = {
        {RemovalError::HoldsVolume, "FAILED_VOLUME"},
        {std::make_error_code(std::errc::device_or_resource_busy), "FAILED_BUSY"},
        {{EBUSY, std::system_category()}, "FAILED_BUSY"},
        {{EPERM, std::system_category()}, "FAILED_RIGHTS"},
        {std::make_error_code(std::errc::io_error), "FAILED_OTHER"},
    };
    for (const auto &row : rows)
        EXPECT_STREQ(reasonKey(row.error), row.key) << row.error.message();
}

} // namespace
} // namespace brightsweep
