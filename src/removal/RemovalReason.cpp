#include "removal/RemovalReason.h"

#include "linux/RemovalError.h"

#include <QtGlobal>

#include <array>

namespace brightsweep {

namespace {

struct Row {
    std::error_code error;
    const char *key;
};

// The first that equals the error holds: a volume that is in the way counts as busy, too, but what
// is busy holds no volume for that.
const std::array rows = {
    Row{RemovalError::HoldsVolume, QT_TRID_NOOP("FAILED_VOLUME")},
    Row{RemovalError::CrossesVolume, QT_TRID_NOOP("FAILED_VOLUME")},
    Row{RemovalError::ProtectedPlace, QT_TRID_NOOP("FAILED_PROTECTED")},
    Row{RemovalError::Immutable, QT_TRID_NOOP("FAILED_PROTECTED")},
    Row{RemovalError::AppendOnly, QT_TRID_NOOP("FAILED_PROTECTED")},
    Row{RemovalError::PartOfSystem, QT_TRID_NOOP("part of the system")},
    Row{RemovalError::Changed, QT_TRID_NOOP("FAILED_CHANGED")},
    Row{std::make_error_code(std::errc::permission_denied), QT_TRID_NOOP("FAILED_RIGHTS")},
    Row{std::make_error_code(std::errc::operation_not_permitted), QT_TRID_NOOP("FAILED_RIGHTS")},
    Row{std::make_error_code(std::errc::device_or_resource_busy), QT_TRID_NOOP("FAILED_BUSY")},
    Row{std::make_error_code(std::errc::text_file_busy), QT_TRID_NOOP("FAILED_BUSY")},
    Row{std::make_error_code(std::errc::read_only_file_system), QT_TRID_NOOP("FAILED_READ_ONLY")},
    Row{std::make_error_code(std::errc::operation_canceled), QT_TRID_NOOP("FAILED_STOPPED")},
};

constexpr char otherKey[] = QT_TRID_NOOP("FAILED_OTHER");

} // namespace

const char *reasonKey(std::error_code error) {
    for (const Row &row : rows) {
        if (error == std::error_condition(row.error.value(), row.error.category()))
            return row.key;
    }
    return otherKey;
}

const char *reasonKey(const RemovalOutcome &outcome) {
    return outcome.words.empty() ? reasonKey(outcome.error) : otherKey;
}

} // namespace brightsweep
