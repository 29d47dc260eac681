#pragma once

#include "duplicates/FileFacts.h"

#include <QImage>
#include <QObject>
#include <QSize>

#include <filesystem>
#include <memory>
#include <string>

namespace brightsweep {

class ThreadWorker;

/// Looks at one file at a time on a worker: what it is, the first lines of a text, a picture that
/// is decoded from 64 MiB and within a second at most, and of anything else the picture that the
/// desktop has in its cache of thumbnails; none is made. A wish that comes meanwhile is met next,
/// and only the last one. Main thread.
class PreviewLoader : public QObject {
    Q_OBJECT

public:
    explicit PreviewLoader(QObject *parent = nullptr);
    ~PreviewLoader() override;

    /// The picture fits into `box`, in pixels of the screen.
    void load(const std::filesystem::path &path, QSize box);
    /// Nothing is wanted any more.
    void forget() { m_wanted.path.clear(); }

Q_SIGNALS:
    void loaded(const std::filesystem::path &path, const brightsweep::FileFacts &facts,
                const QImage &picture);

private:
    struct Wish {
        std::filesystem::path path;
        QSize box;
        bool operator==(const Wish &) const = default;
    };

    void start();
    void look(Wish wish);
    void hasLooked();

    Wish m_wanted;
    Wish m_looksAt;
    std::shared_ptr<ThreadWorker> m_worker;
    FileFacts m_facts; ///< with the picture, the worker's while it runs
    QImage m_picture;
};

} // namespace brightsweep
