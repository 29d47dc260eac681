#include "linux/RemovalError.h"

#include "linux/TextKey.h"

#include <array>
#include <string>

namespace brightsweep {

namespace {

struct Row {
    RemovalError error;
    const char *words;
    bool isBusy = false;
};

constexpr std::array rows = {
    Row{RemovalError::HoldsVolume, textKey("holds another volume"), true},
    Row{RemovalError::CrossesVolume, textKey("lies on another volume"), true},
    Row{RemovalError::ProtectedPlace, textKey("a protected place")},
    Row{RemovalError::PartOfSystem, textKey("part of the system")},
    Row{RemovalError::Changed, textKey("changed since it was found")},
    Row{RemovalError::MountsUnknown, textKey("the mount table cannot be read")},
    Row{RemovalError::OutsideOwnTree, textKey("lies outside of this system's folders")},
    Row{RemovalError::NoTrash, textKey("has no trash on its volume")},
    Row{RemovalError::InTrash, textKey("lies in the trash already")},
    Row{RemovalError::Immutable, textKey("is kept from being changed (chattr +i)")},
    Row{RemovalError::AppendOnly, textKey("may only be added to (chattr +a)")},
};

class Category final : public std::error_category {
public:
    const char *name() const noexcept override { return "removal"; }

    std::string message(int value) const override {
        for (const Row &row : rows) {
            if (int(row.error) == value)
                return row.words;
        }
        return textKey("cannot be removed");
    }

    std::error_condition default_error_condition(int value) const noexcept override {
        for (const Row &row : rows) {
            if (int(row.error) == value && row.isBusy)
                return std::errc::device_or_resource_busy;
        }
        return {value, *this};
    }
};

} // namespace

std::error_code make_error_code(RemovalError error) {
    static const Category category;
    return {int(error), category};
}

bool isKeptByFlag(const std::error_code &error) {
    return error == RemovalError::Immutable || error == RemovalError::AppendOnly;
}

} // namespace brightsweep
