#pragma once

#include "results/SimpleNodeData.h"

#include <QString>

#include <string>
#include <utility>

namespace brightsweep {

/// What a leaf of the clean page knows beyond a file: whether it is a directory, why its last
/// removal failed, and which running program holds something of it open. The texts are empty where
/// there is nothing to tell.
class CleanNodeData final : public SimpleNodeData {
public:
    explicit CleanNodeData(std::string path) : SimpleNodeData(std::move(path), true) {}

    QString failure;
    const char *reasonKey = ""; ///< of the same in two or three words
    QString holder;
    bool isDirectory = false;
};

} // namespace brightsweep
