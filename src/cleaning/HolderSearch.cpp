#include "cleaning/HolderSearch.h"

#include "cleaning/ScanViewController.h"
#include "core/ThreadWorker.h"
#include "foundation/Paths.h"
#include "removal/HeldPrograms.h"

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
    const HeldPrograms programs;
    m_result.clear();
    for (const ScanViewController *controller : m_controllers) {
        controller->visitRows([&](const CleanFileInfo &row) {
            if (!row.root)
                return;
            std::string program = programs.of(paths::join(row.root->path, row.name));
            if (!program.empty())
                m_result.emplace(row.path.native(), std::move(program));
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
