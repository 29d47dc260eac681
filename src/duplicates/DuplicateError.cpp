#include "duplicates/DuplicateError.h"

#include <array>
#include <string>

namespace brightsweep {

namespace {

struct Row {
    DuplicateError error;
    const char *words;
};

constexpr std::array rows = {
    Row{DuplicateError::NoOther, "no other copy of it is left"},
    Row{DuplicateError::OtherChanged, "the copy that stays has changed since it was found"},
    Row{DuplicateError::OtherUnreadable, "the copy that stays cannot be read"},
    Row{DuplicateError::SameFile, "the copy that stays is this very file"},
    Row{DuplicateError::Differs, "the copy that stays has other contents"},
    Row{DuplicateError::BeingWritten, "a program is writing to it"},
    Row{DuplicateError::OtherBeingWritten, "a program is writing to the copy that stays"},
    Row{DuplicateError::BehindLink, "lies behind a link"},
    Row{DuplicateError::CannotShare, "its file system cannot share blocks"},
    Row{DuplicateError::OtherFileSystem, "lies on another file system than the copy that stays"},
    Row{DuplicateError::NeverCopiedOnWrite, "is kept out of copy-on-write, and so out of sharing"},
    Row{DuplicateError::InUseBySystem, "is in use as a program or as swap space"},
    Row{DuplicateError::ReadOnly, "its volume can only be read"},
    Row{DuplicateError::ShareRefused, "its file system refuses to share its blocks"},
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
