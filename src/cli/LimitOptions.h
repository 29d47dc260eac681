#pragma once

#include "cli/Command.h"

#include <QLatin1String>
#include <QString>

#include <cstdint>
#include <optional>

namespace brightsweep::cli {

/// The options --limit and --unit, of a size in bytes.
void addLimitOptions(QCommandLineParser &parser, const QString &meaning);

/// The bytes of what is given; each of the two that is not given comes from the settings, where a
/// unit that is none counts bytes. Nothing, after the line of a wrong usage, where one is wrong.
std::optional<std::uint64_t> limitOf(const QCommandLineParser &parser, Output &output,
                                     QLatin1String limitKey, QLatin1String unitKey);

/// The whole number behind an option; nothing where it is none.
std::optional<std::uint64_t> numberOf(const QCommandLineParser &parser, QLatin1String option);

} // namespace brightsweep::cli
