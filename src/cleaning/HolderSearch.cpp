#include "cleaning/HolderSearch.h"

#include "cleaning/ScanViewController.h"
#include "core/ThreadWorker.h"
#include "foundation/Paths.h"
#include "platform/FileHolders.h"
#include "platform/Platform.h"

#include <utility>

namespace brightsweep {

HolderSearch::HolderSearch(std::vector<ScanViewController *> controllers, QObject *parent)
    : QObject(parent), m_controllers(std::move(controllers)) {}

HolderSearch::~HolderSearch() {
    if (m_worker)
        m_worker->abandon();
}

void HolderSearch::start() {
    m_again = m_worker != nullptr;
    if (!m_worker)
        m_worker = ThreadWorker::workOn(this, &HolderSearch::search, nullptr,
                                        &HolderSearch::searchFinished);
}

void HolderSearch::search(std::nullptr_t) {
    // What is held, and every directory on the way there.
    std::unordered_map<std::string, std::string> programs;
    for (const HeldFile &held : Platform::current().holders->heldFiles()) {
        std::string path = held.path;
        for (auto end = path.size(); end != path.npos && end > 0; end = path.rfind('/')) {
            path.resize(end);
            if (!programs.emplace(path, held.program).second)
                break; // and with it all above
        }
    }
    m_result.clear();
    for (const ScanViewController *controller : m_controllers) {
        controller->visitRows([&](const CleanFileInfo &row) {
            if (!row.root)
                return;
            const auto held = programs.find(paths::join(row.root->path, row.name).native());
            if (held != programs.end())
                m_result.emplace(row.path.native(), held->second);
        });
    }
}

void HolderSearch::searchFinished() {
    m_worker.reset();
    m_found.swap(m_result);
    Q_EMIT found();
    if (std::exchange(m_again, false))
        start();
}

} // namespace brightsweep
