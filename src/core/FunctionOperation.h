#pragma once

#include "core/Operation.h"

#include <functional>
#include <utility>

namespace brightsweep {

/// Work of a serial queue that is one call, made once; none where it has been cancelled.
class FunctionOperation final : public Operation {
public:
    explicit FunctionOperation(std::function<void()> work) : m_work(std::move(work)) {}

    void main() override {
        if (!isCancelled())
            m_work();
    }

private:
    const std::function<void()> m_work;
};

} // namespace brightsweep
