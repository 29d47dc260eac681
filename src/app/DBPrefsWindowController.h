#pragma once

#include <QHash>
#include <QObject>
#include <QRect>
#include <QSize>
#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <string>

namespace brightsweep {

/// The standard entries of a toolbar that hold no panel.
inline constexpr QLatin1String toolbarFlexibleSpaceIdentifier("flexibleSpace");
inline constexpr QLatin1String toolbarSpaceIdentifier("space");

/// One item of the toolbar.
struct ToolbarItem {
    QString identifier;
    QString text;  ///< empty for one that shows its image alone
    QString name;  ///< what a screen reader says and a tool tip shows
    QString image; ///< the name of its image
};

/// A window whose toolbar switches one content area between panels: which panels there are, which
/// one a click on an item shows, which is shown again at the next start. The window and the panels
/// themselves are a view's, which knows a panel by its identifier, makes it when it is first asked
/// for and keeps it. Main thread.
class DBPrefsWindowController : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // -- What the window has; filled by the first showWindow()

    /// All identifiers in the order of adding, those without an item too.
    const QStringList &toolbarIdentifiers() const { return m_identifiers; }
    /// The items in order; the two kinds of space are among them.
    QList<ToolbarItem> toolbarItems() const;
    bool hasPanel(const QString &identifier) const { return m_panels.contains(identifier); }

    // -- Showing

    /// Shows the window on the page that was last used.
    void showWindow();
    /// A click on a toolbar item.
    void toggleActivePreferenceView(const QString &identifier);
    void displayViewForIdentifier(const QString &identifier, bool animate);
    /// Marks an item of the toolbar without a click.
    void setSelectedItem(const QString &identifier);
    void setLevel(int levelKey);
    void center();
    /// The window has been closed. That does not end the program.
    void windowWillClose();
    bool isVisible() const { return m_visible; }

    const QString &selectedItem() const { return m_selectedItem; }
    /// The panel on show; empty before the first.
    const QString &currentPanel() const { return m_currentPanel; }
    QString title() const;
    int levelKey() const { return m_levelKey; }

    /// For the next showing: what lets the window come to the front. Taken once.
    void setActivationToken(const std::string &token) { m_activationToken = token; }
    std::string takeActivationToken() { return std::exchange(m_activationToken, {}); }

    // -- Animation

    bool crossFade() const { return _crossFade; }
    void setCrossFade(bool crossFade) { _crossFade = crossFade; }
    bool shiftSlowsAnimation() const { return _shiftSlowsAnimation; }
    void setShiftSlowsAnimation(bool slows) { _shiftSlowsAnimation = slows; }
    /// How long a change of panel takes; the shift key may slow a cross-fade.
    std::chrono::milliseconds crossFadeDuration(bool shiftPressed) const;
    /// The window's frame around a panel of that size. The upper edge and x stay; what the frame
    /// has above the content stays, too. In coordinates whose y grows downwards.
    static QRect frameForView(const QRect &windowFrame, const QSize &content, const QSize &panel);
    /// The least size of a panel's page where none is stated.
    static constexpr QSize usualPanelSize{880, 500};

    // -- The sub-panel of a feature: 0 start, 1 progress, 2 data. A page sets it and displays.

    std::int64_t view4FastClean() const { return m_view4FastClean; }
    std::int64_t view4Duplicates() const { return m_view4Duplicates; }
    std::int64_t view4DiskUsage() const { return m_view4DiskUsage; }
    void setView4FastClean(std::int64_t state) { m_view4FastClean = state; }
    void setView4Duplicates(std::int64_t state) { m_view4Duplicates = state; }
    void setView4DiskUsage(std::int64_t state) { m_view4DiskUsage = state; }
    /// The panel that a toolbar item stands for now.
    QString panelForIdentifier(const QString &identifier) const;

Q_SIGNALS:
    /// Put the panel in the place of the one on show. The panels change at once; with `animate` the
    /// window's frame takes its time.
    void displayPanel(const QString &identifier, bool animate);
    void selectedItemChanged(const QString &identifier);
    void titleChanged(const QString &title);
    /// Show the window and bring it to the front.
    void windowShown();
    void centreRequested();
    void levelChanged(int levelKey);
    /// The help item.
    void helpRequested();

protected:
    virtual void setupToolbar() {}
    virtual void beginToSanUninstallListWhenSelect(int) {}

    /// The number of the uninstall page for beginToSanUninstallListWhenSelect().
    static constexpr int uninstallSelection = 6;

    /// Adds a panel. One whose label begins with "QC_" or "DATA_" gets no item.
    void addView(const QString &label, const QString &text, const QString &name);
    /// Adds an item without a panel of its own.
    void addItem(const QString &label, const QString &name);
    void addSpaces();

private:
    QString storedItem() const;

    QStringList m_identifiers;
    QStringList m_panels;
    QHash<QString, ToolbarItem> m_items;
    QString m_selectedItem;
    QString m_currentPanel;
    std::string m_activationToken;
    int m_levelKey = 0;
    bool _crossFade = true;
    bool _shiftSlowsAnimation = true;
    bool alreadyInitilized = false;
    bool m_visible = false;
    std::int64_t m_view4FastClean = 0;
    std::int64_t m_view4Duplicates = 0;
    std::int64_t m_view4DiskUsage = 0;
};

} // namespace brightsweep
