#include "volumes/StatusMenu.h"

#include "core/UtilityObject.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Paths.h"
#include "volumes/VolumeNotifications.h"

namespace brightsweep {

void StatusMenu::removeItems() {
    m_entries.clear();
    m_rows.clear();
}

void StatusMenu::addHeader(const char *sectionKey) {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Header;
    entry.sectionKey = sectionKey;
    m_entries.push_back(entry);
}

void StatusMenu::addRow(MenuItem item) {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Row;
    entry.row = m_rows.size();
    m_entries.push_back(entry);
    m_rows.push_back(std::move(item));
}

void StatusMenu::addSeparator() {
    m_entries.push_back({});
}

void StatusMenu::addAction(MenuAction action, const QString &text, const QString &key, bool enabled,
                           bool checked) {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Action;
    entry.action = action;
    entry.text = text;
    entry.key = key;
    entry.enabled = enabled;
    entry.checked = checked;
    m_entries.push_back(entry);
}

void StatusMenu::finish() {
    Q_EMIT rebuilt();
}

const MenuItem *StatusMenu::itemWithVolume(std::int16_t volRefNumber) const {
    for (const MenuItem &item : m_rows) {
        if (!item.isMemory() && item.volRefNumber == volRefNumber)
            return &item;
    }
    return nullptr;
}

const MenuItem *StatusMenu::memoryItem() const {
    // A volume may have the number that is the memory's title.
    for (const MenuItem &item : m_rows) {
        if (item.isMemory())
            return &item;
    }
    return nullptr;
}

void StatusMenu::setRow(const MenuItem &place, MenuItem item) {
    const auto index = std::size_t(&place - m_rows.data());
    const bool same = place.looksLike(item);
    m_rows[index] = std::move(item);
    if (!same)
        Q_EMIT rowChanged(int(index));
}

MenuEntry *StatusMenu::entryWith(MenuAction action) {
    for (MenuEntry &entry : m_entries) {
        if (entry.kind == MenuEntry::Kind::Action && entry.action == action)
            return &entry;
    }
    return nullptr;
}

void StatusMenu::setChecked(MenuAction action, bool checked) {
    MenuEntry *entry = entryWith(action);
    if (!entry || entry->checked == checked)
        return;
    entry->checked = checked;
    Q_EMIT entryChanged(int(entry - m_entries.data()));
}

void StatusMenu::setEnabled(MenuAction action, bool enabled) {
    MenuEntry *entry = entryWith(action);
    if (!entry || entry->enabled == enabled)
        return;
    entry->enabled = enabled;
    Q_EMIT entryChanged(int(entry - m_entries.data()));
}

bool StatusMenu::isChecked(MenuAction action) const {
    for (const MenuEntry &entry : m_entries) {
        if (entry.kind == MenuEntry::Kind::Action && entry.action == action)
            return entry.checked;
    }
    return false;
}

void StatusMenu::cancelTracking() {
    Q_EMIT closeRequested();
}

void StatusMenu::clickRow(std::size_t row) {
    if (row >= m_rows.size() || !m_rows[row].answersClicks())
        return;
    NotificationCenter::defaultCenter().post(
        openFinderWhenClickItemsNotification, this,
        {{QStringLiteral("object"), paths::toVariant(m_rows[row].volRootDir)}});
}

void StatusMenu::backDisk(std::size_t row) {
    if (row >= m_rows.size() || !m_rows[row].bCanEject || m_rows[row].isEjecting ||
        m_rows[row].isMemory())
        return;
    const int volRefNumber = m_rows[row].volRefNumber;
    const QString name = m_rows[row].volumeSize;
    cancelTracking();
    Q_EMIT ejectRequested(volRefNumber, name);
}

void StatusMenu::cleanMemoryButtonClick() {
    const MenuItem *row = memoryItem();
    if (!row)
        return;
    UtilityObject::getMyObject().isFristOpenTimeInMenuItem = false;
    MenuItem freeing = *row;
    freeing.volumeSize = QStringLiteral(QT_TRID_NOOP("Freeing..."));
    setRow(*row, freeing);
    NotificationCenter::defaultCenter().post(cleanMemoryClickActionNotification, this);
}

void StatusMenu::activate(MenuAction action) {
    const MenuEntry *entry = entryWith(action);
    if (entry && entry->enabled)
        Q_EMIT actionTriggered(action);
}

void StatusMenu::setClicked(std::size_t row, bool inside) {
    if (row >= m_rows.size() || m_rows[row].clicked == inside)
        return;
    m_rows[row].clicked = inside;
    Q_EMIT rowChanged(int(row));
}

void StatusMenu::setMenuVisible(bool visible) {
    if (m_visible == visible)
        return;
    m_visible = visible;
    Q_EMIT menuVisibleChanged(visible);
}

} // namespace brightsweep
