#pragma once

#include "diskusage/AllDir.h"
#include "diskusage/NodeArena.h"

#include <new>

namespace brightsweep {

/// A child array as it is published, at once and with its count. Once published only a slot may
/// change, to null or to what stands for the same directory; another order is another array.
struct AllDir::Children {
    std::int64_t count;

    std::atomic<AllDir *> *slots() { return reinterpret_cast<std::atomic<AllDir *> *>(this + 1); }

    static Children *make(NodeArena &arena, std::span<AllDir *const> nodes) {
        void *storage =
            arena.allocate(sizeof(Children) + nodes.size() * sizeof(std::atomic<AllDir *>));
        auto *children = new (storage) Children{std::int64_t(nodes.size())};
        std::atomic<AllDir *> *slot = children->slots();
        for (AllDir *node : nodes)
            new (slot++) std::atomic<AllDir *>(node);
        return children;
    }
};

} // namespace brightsweep
