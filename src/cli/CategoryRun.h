#pragma once

#include "cleaning/ScanViewController.h"
#include "cli/Command.h"
#include "platform/StandardDirectories.h"
#include "removal/RemovalRun.h"

#include <memory>
#include <optional>
#include <vector>

namespace brightsweep::cli {

class JsonWriter;

/// One clean category of a command, with its scanner.
struct CategoryRun {
    unsigned index = 0;
    std::vector<RemovalRoot> folders;
    std::vector<LeftOutFolder> leftOut; ///< meant for the category, but not fit to be cleaned
    std::unique_ptr<ScanViewController> controller;
};

/// The option --category, which may be given several times.
void addCategoryOption(QCommandLineParser &parser);
/// The categories named, in their order and each once; nothing, after the line of a wrong usage,
/// where one is no number from 0 to 5.
std::optional<std::vector<unsigned>> categoriesOf(const QCommandLineParser &parser, Output &output);

/// How a run over the categories ended. One that was left behind still uses its controllers: the
/// process has to end with what is known.
enum class RunEnd { Whole, Stopped, LeftBehind };

/// Scans the categories, all at once. What an interrupted scan has found is there.
RunEnd scanCategories(std::vector<CategoryRun> &runs, const std::vector<unsigned> &indices,
                      Output &output);
/// Removes every row of every category.
RunEnd removeCategories(std::vector<CategoryRun> &runs, const std::shared_ptr<RemovalRun> &run,
                        Output &output);

} // namespace brightsweep::cli
