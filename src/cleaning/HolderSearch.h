#pragma once

#include <QObject>

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace brightsweep {

class ScanViewController;
class ThreadWorker;

/// Finds out of which rows running programs hold something open, on a worker. Belongs to the thread
/// that made it, on which found() is emitted; the controllers outlive it. A search that is asked
/// for while one runs follows it.
class HolderSearch : public QObject {
    Q_OBJECT

public:
    explicit HolderSearch(std::vector<ScanViewController *> controllers, QObject *parent = nullptr);
    /// Waits for a search that is under way.
    ~HolderSearch() override;

    void start();
    /// By the rows' paths: a program that holds the item or something below it.
    const std::unordered_map<std::string, std::string> &programOfPath() const { return m_found; }

Q_SIGNALS:
    void found();

private:
    void search(std::nullptr_t argument);
    void searchFinished();

    const std::vector<ScanViewController *> m_controllers;
    std::shared_ptr<ThreadWorker> m_worker;
    bool m_again = false;
    std::unordered_map<std::string, std::string> m_result; // the worker's, until it has ended
    std::unordered_map<std::string, std::string> m_found;
};

} // namespace brightsweep
