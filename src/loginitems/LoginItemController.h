#pragma once

#include "core/OperationQueue.h"
#include "foundation/CallQueue.h"
#include "loginitems/AppInformation.h"
#include "loginitems/LoginItemModel.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace brightsweep {

/// The login items page without its screen: the table of what starts with the user's session, and
/// what can be done with a row. Rows go by the names of their files, so that a change from outside
/// never turns an act to another entry.
///
/// Main thread. Whatever reads or writes the list runs on a worker, one thing after the other, and
/// the rows show it when it is done; a change from outside reads the list anew, in its own order.
/// Destroying it waits for what runs.
class LoginItemController : public QObject {
    Q_OBJECT

public:
    /// What the page needs of the window around it.
    struct Surroundings {
        /// False keeps what the buttons add and remove from happening.
        std::function<bool()> licenceGate = [] { return true; };
    };

    explicit LoginItemController(QObject *parent = nullptr);
    explicit LoginItemController(Surroundings surroundings, QObject *parent = nullptr);
    ~LoginItemController() override;

    // -- What the view shows
    const std::vector<LoginItemRow::Pointer> &allLoginItemsInfo() const { return m_rows; }
    LoginItemModel &model() { return m_model; }
    /// What the system starts for everybody, with the flag that it is switched off for this user.
    const std::vector<LoginItemEntry> &systemItems() const { return m_systemItems; }
    /// Something is asked of the list and has not been answered.
    bool isWaiting() const { return m_waiting > 0; }
    /// The list has been asked for and answered once.
    bool isListed() const { return m_isListed; }
    /// Why it could not be read the last time, in words; empty where it could.
    const QString &readProblem() const { return m_readProblem; }
    /// The row that stands out; -1 for none.
    int selectRow() const { return m_selectRow; }

    // -- What the user does
    void updateLoginItemsList();
    /// Asks the view for what to add, by askForLoginItems().
    void addLoginItems();
    /// Asks it for a folder, by askForLoginFolder(): choosers of files enter folders.
    void addLoginFolder();
    /// The answer to both; also what was dropped. A row appears for each path at once, and goes
    /// again with the next reading where the entry could not be made.
    void addPaths(std::vector<std::filesystem::path> paths);
    void delLoginItem(int row);
    void changeHideState(int row);
    /// Starts the entry as the session would; where it has nothing to start, shows its file.
    void openButtonAction(int row);
    /// Shows in the file manager what it starts, or else its own file.
    void viewButtonAction(int row);
    bool shouldSelectRow(int row);
    /// Puts rows before the one at `place`, in their old order. Only the table has this order.
    void moveRows(const std::set<int> &rows, int place);
    void setSystemItemStarted(const std::string &file, bool started);

Q_SIGNALS:
    /// Several files; the chooser starts in that folder.
    void askForLoginItems(const QString &title, const QString &prompt,
                          const std::filesystem::path &folder);
    void askForLoginFolder(const QString &title);
    void waitingChanged(bool waiting);
    void systemItemsChanged();
    /// The rows have become those of a fresh reading; the view finds its own again by their files.
    void listChanged();
    /// Something could not be done, in words; of an item by that name.
    void failed(const QString &words);
    /// What failed before is of no interest any more: something else worked, or entries
    /// have come or gone outside.
    void failureIsOver();

private:
    struct Listing;

    void run(std::function<void()> work, std::function<void()> then);
    /// Reads the list on the worker, hands it over and says whether it could be read.
    bool readList(Listing &listing);
    void show(Listing listing);
    void changeLoginVaule(const LoginItemRow::Pointer &row);
    void tell(const QString &name, std::error_code error);
    int rowOfFile(const std::string &file) const;

    const Surroundings m_surroundings;
    std::vector<LoginItemRow::Pointer> m_rows;
    std::vector<LoginItemEntry> m_systemItems;
    LoginItemModel m_model{*this};
    int m_selectRow = -1;
    int m_waiting = 0;
    bool m_isListed = false;
    QString m_readProblem;
    std::atomic<bool> m_isListingWanted{false}; ///< one waits, that has not begun
    CallQueue m_calls;
    std::shared_ptr<void> m_watch; // of the list, with calls by m_calls
    OperationQueue m_queue;        ///< the last one: it waits for work that uses what stands above
};

} // namespace brightsweep
