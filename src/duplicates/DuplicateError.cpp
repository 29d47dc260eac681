#include "duplicates/DuplicateError.h"

#include <QtGlobal>

#include <array>
#include <string>

namespace brightsweep {

namespace {

struct Row {
    DuplicateError error;
    const char *words;
};

constexpr std::array rows = {
    Row{DuplicateError::NoOther, QT_TRID_NOOP("no other copy of it is left")},
    Row{DuplicateError::OtherChanged,
        QT_TRID_NOOP("the copy that stays has changed since it was found")},
    Row{DuplicateError::OtherUnreadable, QT_TRID_NOOP("the copy that stays cannot be read")},
    Row{DuplicateError::SameFile, QT_TRID_NOOP("the copy that stays is this very file")},
    Row{DuplicateError::Differs, QT_TRID_NOOP("the copy that stays has other contents")},
    Row{DuplicateError::BeingWritten, QT_TRID_NOOP("a program is writing to it")},
    Row{DuplicateError::OtherBeingWritten,
        QT_TRID_NOOP("a program is writing to the copy that stays")},
    Row{DuplicateError::BehindLink, QT_TRID_NOOP("lies behind a link")},
    Row{DuplicateError::CannotShare, QT_TRID_NOOP("its file system cannot share blocks")},
    Row{DuplicateError::OtherFileSystem,
        QT_TRID_NOOP("lies on another file system than the copy that stays")},
    Row{DuplicateError::NeverCopiedOnWrite,
        QT_TRID_NOOP("is kept out of copy-on-write, and so out of sharing")},
    Row{DuplicateError::InUseBySystem, QT_TRID_NOOP("is in use as a program or as swap space")},
    Row{DuplicateError::ReadOnly, QT_TRID_NOOP("its volume can only be read")},
    Row{DuplicateError::ShareRefused, QT_TRID_NOOP("its file system refuses to share its blocks")},
};

class Category final : public std::error_category {
public:
    const char *name() const noexcept override { return "duplicate"; }

    std::string message(int value) const override {
        for (const Row &row : rows) {
            if (int(row.error) == value)
                return row.words;
        }
        return "stays";
    }
};

} // namespace

std::error_code make_error_code(DuplicateError error) {
    static const Category category;
    return {int(error), category};
}

} // namespace brightsweep
