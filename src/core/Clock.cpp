#include "core/Clock.h"

#include <QTimer>

#include <map>

namespace brightsweep {

namespace {

class EventLoopClock final : public Clock {
public:
    Handle callAfter(std::chrono::milliseconds delay, std::function<void()> function) override {
        const Handle handle = ++m_last;
        auto timer = std::make_unique<QTimer>();
        timer->setSingleShot(true);
        QObject::connect(timer.get(), &QTimer::timeout, timer.get(),
                         [this, handle, function = std::move(function)] {
                             // The timer is deleted later, and with it what is called here.
                             cancel(handle);
                             function();
                         });
        timer->start(delay);
        m_timers.emplace(handle, std::move(timer));
        return handle;
    }
    void cancel(Handle handle) override {
        const auto found = m_timers.find(handle);
        if (found == m_timers.end())
            return;
        found->second->stop();
        found->second.release()->deleteLater();
        m_timers.erase(found);
    }

private:
    Handle m_last = 0;
    std::map<Handle, std::unique_ptr<QTimer>> m_timers;
};

} // namespace

Clock::~Clock() = default;

Clock &Clock::eventLoop() {
    static auto *clock = new EventLoopClock;
    return *clock;
}

} // namespace brightsweep
