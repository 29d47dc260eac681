#include "cleaning/CleanSelection.h"

#include "cleaning/CategoryListModel.h"
#include "cleaning/CleanCategories.h"
#include "cleaning/ItemSizes.h"
#include "cleaning/ScanViewController.h"
#include "foundation/SaturatingSum.h"
#include "foundation/UserDefaults.h"
#include "preferences/PreferenceViewController.h"

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

// A write reaches the disk, so what stays as it is is not written.
void changeCheckBoxInUserDefaults(unsigned category, int number) {
    const QLatin1String key(cleanCategories[category].key);
    if (!UserDefaults::standardUserDefaults().hasUserValue(key) ||
        storedSelection(category) != number)
        PreferenceViewController::setCategoryClicked(category, number);
}

} // namespace

CleanSelection::CleanSelection(std::vector<ScanViewController *> controllers,
                               std::vector<CategoryListModel *> lists)
    : m_controllers(std::move(controllers)), m_lists(std::move(lists)) {
    reload();
}

void CleanSelection::reload() {
    m_selectArray = getDefaultsValue();
}

int CleanSelection::returnSelectNum() const {
    return int(std::count_if(m_selectArray.begin(), m_selectArray.end(), [](const QString &state) {
        return state == QLatin1String("1") || state == QLatin1String("2");
    }));
}

CleanSelection::Counts CleanSelection::counts(unsigned category) const {
    const ScanViewController::Counts rows = m_controllers[category]->counts();
    return {rows.ticked, rows.rows, rows.shownBytes};
}

CleanSelection::Counts &CleanSelection::Counts::operator+=(const Counts &more) {
    selected += more.selected;
    total += more.total;
    bytes = addSaturating(bytes, more.bytes);
    return *this;
}

void CleanSelection::applyStored() {
    for (unsigned category = 0; category < m_controllers.size(); ++category) {
        const QString &state = m_selectArray[category];
        tickAll(category, state != QLatin1String("0"));
        if (state == QLatin1String("2"))
            changeCheckBoxInUserDefaults(category, 1);
    }
}

void CleanSelection::tickAll(unsigned category, bool ticked) {
    if (ticked)
        m_lists[category]->setAllCheckBoxSelect();
    else
        m_lists[category]->setNoCheckBoxSelect();
}

int CleanSelection::stateOf(unsigned category, const Counts &one) {
    if (one.total == 0)
        return int(storedSelection(category));
    return one.selected == one.total ? 1 : one.selected > 0 ? 2 : 0;
}

std::array<int, 6> CleanSelection::store() {
    // Ticks that do not come from the user's settings are not to end up there.
    const bool isKnown = UserDefaults::standardUserDefaults().readProblem().empty();
    std::array<int, 6> states{};
    for (unsigned category = 0; category < m_controllers.size(); ++category) {
        const Counts one = counts(category);
        states[category] = stateOf(category, one);
        // One that a clean has emptied or a scan did not reach is no choice of the user's.
        if (one.total == 0)
            continue;
        if (states[category] != 2)
            tickAll(category, states[category] == 1);
        if (isKnown)
            changeCheckBoxInUserDefaults(category, states[category]);
    }
    return states;
}

} // namespace brightsweep
