#pragma once

#include "uninstall/Uninstallation.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

namespace brightsweep {

/// What the uninstall page says of applications and of what is about to happen to them, in the
/// reader's language. Any thread.
namespace UninstallTexts {

/// How it came onto the machine, in a word.
QString kind(ApplicationKind kind);
QString leftover(LeftoverKind kind);
/// The reader's words for a reason that a source or a search gave in English; the reason itself
/// where none are known.
QString translated(const std::string &reason);
/// Why it is part of the system; empty where that is not known.
QString systemReason(const InstalledApplication &application);

/// Why it stays although it is ticked, in a few words; empty where nothing keeps it.
QString obstacle(const RemovalPlan &plan);
/// The same of a leftover: what keeps it, or that it takes rights.
QString obstacle(const Leftover &leftover);
/// What it is, why it is taken for one where that is given, and what keeps it, in one line.
QString leftoverNote(const Leftover &leftover, const QString &reason = {});
/// Why it stayed, or what of it did, after an attempt with the rights that it takes or without.
QString reason(const Uninstallation::Record &record, bool hadRights);

/// What goes with it, and what to mind, a sentence each.
QStringList sentences(const RemovalPlan &plan);
/// What the tick of the system's own settings takes along; empty where there is no such tick.
QString systemSettings(const RemovalPlan &plan);

/// What a removal as it is ticked now comes to.
struct Sum {
    std::size_t applications = 0;
    std::size_t along = 0; ///< other packages
    std::size_t leftovers = 0;
    std::size_t staying = 0; ///< leftovers that are not ticked
    std::uint64_t bytes = 0;
    std::uint64_t stayingBytes = 0;
};
/// The sizes are those of the applications, in the order of the plans.
Sum sum(const std::vector<RemovalPlan> &plans, const std::vector<std::uint64_t> &sizes);
QStringList sentences(const Sum &sum);

} // namespace UninstallTexts
} // namespace brightsweep
