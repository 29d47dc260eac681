#include "duplicates/DuplicateError.h"

#include "foundation/WordTable.h"

#include <QtGlobal>

#include <string>

namespace brightsweep {

namespace {

constexpr std::array rows = {
    WordRow{DuplicateError::NoOther, QT_TRID_NOOP("no other copy of it is left")},
    WordRow{DuplicateError::OtherChanged,
            QT_TRID_NOOP("the copy that stays has changed since it was found")},
    WordRow{DuplicateError::OtherUnreadable, QT_TRID_NOOP("the copy that stays cannot be read")},
    WordRow{DuplicateError::SameFile, QT_TRID_NOOP("the copy that stays is this very file")},
    WordRow{DuplicateError::Differs, QT_TRID_NOOP("the copy that stays has other contents")},
    WordRow{DuplicateError::BeingWritten, QT_TRID_NOOP("a program is writing to it")},
    WordRow{DuplicateError::OtherBeingWritten,
            QT_TRID_NOOP("a program is writing to the copy that stays")},
    WordRow{DuplicateError::BehindLink, QT_TRID_NOOP("lies behind a link")},
    WordRow{DuplicateError::CannotShare, QT_TRID_NOOP("its file system cannot share blocks")},
    WordRow{DuplicateError::OtherFileSystem,
            QT_TRID_NOOP("lies on another file system than the copy that stays")},
    WordRow{DuplicateError::NeverCopiedOnWrite,
            QT_TRID_NOOP("is kept out of copy-on-write, and so out of sharing")},
    WordRow{DuplicateError::InUseBySystem, QT_TRID_NOOP("is in use as a program or as swap space")},
    WordRow{DuplicateError::ReadOnly, QT_TRID_NOOP("its volume can only be read")},
    WordRow{DuplicateError::ShareRefused,
            QT_TRID_NOOP("its file system refuses to share its blocks")},
};

class Category final : public std::error_category {
public:
    const char *name() const noexcept override { return "duplicate"; }

    std::string message(int value) const override {
        return wordsIn(rows, DuplicateError(value), "stays");
    }
};

} // namespace

std::error_code make_error_code(DuplicateError error) {
    static const Category category;
    return {int(error), category};
}

} // namespace brightsweep
