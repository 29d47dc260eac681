#pragma once

#include <atomic>

namespace brightsweep {

/// Flags of the session that several pages share. One object, made on first use and never freed;
/// its fields are read and written from every thread, each for itself.
class UtilityObject {
public:
    static UtilityObject &getMyObject();

    std::atomic<int> totalBubbleCount{0}; ///< made so far in one quick clean
    std::atomic<int> liveBubbleCount{0};  ///< on screen now
    std::atomic<bool> isCanBeAction{true};
    std::atomic<bool> isOpenLocked{false}; ///< the padlock that the pages share is open
    std::atomic<bool> isFristOpenTime{true};
    std::atomic<bool> isShowTrialWindow{true};
    std::atomic<bool> isFristOpenTimeInMenuItem{true}; ///< cleared by the menu's memory button
};

} // namespace brightsweep
