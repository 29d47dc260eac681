#pragma once

#include "core/Clock.h"

#include <map>

namespace brightsweep::test {

/// A clock that stands still until the test lets time pass.
class ManualClock final : public Clock {
public:
    Handle callAfter(std::chrono::milliseconds delay, std::function<void()> function) override {
        m_calls.emplace(++m_last, Call{m_now + delay, std::move(function)});
        return m_last;
    }
    void cancel(Handle handle) override { m_calls.erase(handle); }

    /// Makes every call that is due by then, earliest first.
    void advance(std::chrono::milliseconds time) {
        const auto end = m_now + time;
        for (;;) {
            auto next = m_calls.end();
            for (auto each = m_calls.begin(); each != m_calls.end(); ++each) {
                if (each->second.due <= end &&
                    (next == m_calls.end() || each->second.due < next->second.due))
                    next = each;
            }
            if (next == m_calls.end())
                break;
            m_now = next->second.due;
            const auto function = std::move(next->second.function);
            m_calls.erase(next);
            function();
        }
        m_now = end;
    }
    std::size_t waiting() const { return m_calls.size(); }

private:
    struct Call {
        std::chrono::milliseconds due;
        std::function<void()> function;
    };
    std::map<Handle, Call> m_calls;
    Handle m_last = 0;
    std::chrono::milliseconds m_now{0};
};

} // namespace brightsweep::test
