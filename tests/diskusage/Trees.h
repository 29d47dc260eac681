#pragma once

#include "diskusage/W32AllDir.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>

namespace brightsweep::test {

struct FreeTree {
    void operator()(W32AllDir *root) const { root->FreeAll(); }
};
using Tree = std::unique_ptr<W32AllDir, FreeTree>;

/// A finished scan of the folder, as the top of a scan.
inline Tree scan(const std::filesystem::path &folder) {
    AllDir::bStopScan = false;
    Tree root(W32AllDir::newRoot());
    root->ListAllDir(folder.native() + "/", true);
    return root;
}

/// Every node that can be reached, parents first.
inline void forEachNode(AllDir &root, const std::function<void(AllDir &)> &visit) {
    std::vector<AllDir *> waiting{&root};
    while (!waiting.empty()) {
        AllDir &node = *waiting.back();
        waiting.pop_back();
        visit(node);
        for (auto &slot : node.ppChildren()) {
            if (slot.load())
                waiting.push_back(slot.load());
        }
    }
}

/// The sizes of all nodes by path.
inline std::map<std::string, std::int64_t> sizesOf(AllDir &root) {
    std::map<std::string, std::int64_t> sizes;
    forEachNode(root, [&](AllDir &node) { sizes[node.szPath()] = node.iSize; });
    return sizes;
}

} // namespace brightsweep::test
