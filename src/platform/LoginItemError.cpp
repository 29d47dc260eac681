#include "platform/LoginItemError.h"

#include "foundation/WordTable.h"

#include <QtGlobal>

#include <string>

namespace brightsweep {

namespace {

constexpr std::array rows = {
    WordRow{LoginItemError::StandsForSystem,
            QT_TRID_NOOP("without it the system's own entry would start; hide it instead")},
    WordRow{LoginItemError::LinkElsewhere,
            QT_TRID_NOOP("is a link to something that is not your own file in your home")},
    WordRow{LoginItemError::NotAnEntry, QT_TRID_NOOP("is no file that a login item could be in")},
    WordRow{LoginItemError::NameNotText, QT_TRID_NOOP("has a name that a login item cannot hold")},
    WordRow{LoginItemError::NothingToStart, QT_TRID_NOOP("names no program to start")},
    WordRow{LoginItemError::NothingToOpen, QT_TRID_NOOP("is no program, document or folder")},
    WordRow{LoginItemError::NoEntryInside, QT_TRID_NOOP("holds no login item")},
    WordRow{LoginItemError::LoneReturns,
            QT_TRID_NOOP("ends its lines with carriage returns alone and can only be removed")},
    WordRow{LoginItemError::NotOurs, QT_TRID_NOOP("has an entry of your own in its place")},
};

class Category final : public std::error_category {
public:
    const char *name() const noexcept override { return "login item"; }

    std::string message(int value) const override {
        return wordsIn(rows, LoginItemError(value), "stays");
    }
};

} // namespace

std::error_code make_error_code(LoginItemError error) {
    static const Category category;
    return {int(error), category};
}

} // namespace brightsweep
