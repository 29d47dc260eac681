#include "diskusage/ContentFacts.h"

#include "foundation/SaturatingSum.h"

#include <algorithm>

namespace brightsweep {

ContentFacts &ContentFacts::operator+=(const ContentFacts &other) {
    stored = addSaturating(stored, other.stored);
    changed = std::max(changed, other.changed);
    for (std::size_t i = 0; i < classes; ++i)
        byClass[i] += other.byClass[i];
    return *this;
}

ContentFacts &ContentFacts::operator-=(const ContentFacts &other) {
    stored -= std::min(stored, other.stored);
    for (std::size_t i = 0; i < classes; ++i)
        byClass[i] = std::max(0.0F, byClass[i] - other.byClass[i]);
    return *this;
}

std::int32_t ContentFacts::largestClass() const {
    return std::int32_t(std::max_element(byClass.begin(), byClass.end()) - byClass.begin());
}

} // namespace brightsweep
