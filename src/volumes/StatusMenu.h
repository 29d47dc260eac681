#pragma once

#include "volumes/MenuItem.h"

#include <QObject>

#include <vector>

namespace brightsweep {

/// What an entry of the menu does.
enum class MenuAction { None, EjectAll, MainWindow, LaunchAtLogin, Quit };

/// One entry of the menu, in the order in which they stand.
struct MenuEntry {
    enum class Kind { Header, Row, Separator, Action };

    Kind kind = Kind::Separator;
    const char *sectionKey = ""; ///< a header's text is behind this key
    std::size_t row = 0;         ///< a row's place in StatusMenu::rows()
    MenuAction action = MenuAction::None;
    QString text;        ///< an action's text, plain
    QString key;         ///< its shortcut letter
    bool enabled = true; ///< a disabled action stands grey
    bool checked = false;
};

/// The status item's menu as data: the rows of the volumes and of the memory under their headers,
/// then the fixed entries. AppDelegate builds and refreshes it; a view shows it and calls what the
/// user did. It is rebuilt as a whole and never patched. Main thread.
class StatusMenu : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    const std::vector<MenuEntry> &entries() const { return m_entries; }
    const std::vector<MenuItem> &rows() const { return m_rows; }

    // -- Building; announced by finish()

    void removeItems();
    void addHeader(const char *sectionKey);
    void addRow(MenuItem item);
    void addSeparator();
    void addAction(MenuAction action, const QString &text, const QString &key, bool enabled,
                   bool checked = false);
    void finish();

    // -- Refreshing

    /// The row of a volume, or null.
    const MenuItem *itemWithVolume(std::int16_t volRefNumber) const;
    /// The memory's row, or null.
    const MenuItem *memoryItem() const;
    /// Puts the values in the place of that row's; tells only when it looks otherwise.
    void setRow(const MenuItem &place, MenuItem item);
    void setChecked(MenuAction action, bool checked);
    void setEnabled(MenuAction action, bool enabled);
    bool isChecked(MenuAction action) const;
    /// Closes the menu where it is open.
    void cancelTracking();

    // -- What the user did

    void mouseEntered(std::size_t row) { setClicked(row, true); }
    void mouseExited(std::size_t row) { setClicked(row, false); }
    /// Opens the row's volume, where the row answers clicks.
    void clickRow(std::size_t row);
    /// The row's eject button. Closes the menu first: rights may be asked for.
    void backDisk(std::size_t row);
    /// The button of the memory's row.
    void cleanMemoryButtonClick();
    void activate(MenuAction action);

    // -- Whether a view shows the menu

    void menuWillOpen() { setMenuVisible(true); }
    void menuDidClose() { setMenuVisible(false); }
    bool isMenuVisible() const { return m_visible; }

Q_SIGNALS:
    /// Every entry and row may be another.
    void rebuilt();
    void rowChanged(int row);
    /// An action's state has changed.
    void entryChanged(int entry);
    void closeRequested();
    void menuVisibleChanged(bool visible);
    void ejectRequested(int volRefNumber, const QString &name);
    void actionTriggered(brightsweep::MenuAction action);

private:
    void setClicked(std::size_t row, bool inside);
    void setMenuVisible(bool visible);
    MenuEntry *entryWith(MenuAction action);

    std::vector<MenuEntry> m_entries;
    std::vector<MenuItem> m_rows;
    bool m_visible = false;
};

} // namespace brightsweep
