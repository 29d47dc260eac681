#pragma once

#include "duplicates/FileFacts.h"
#include "results/TreeNode.h"

#include <QWidget>

class QLabel;
class QTimer;

namespace brightsweep {

class PreviewLoader;

/// The pane beside the groups: a look at the current file, what is known of it, what its removal
/// would really free, and where the files of its group lie, with what differs made bold. Main
/// thread; it looks at the file on a worker.
class DuplicatePane : public QWidget {
    Q_OBJECT

public:
    explicit DuplicatePane(QWidget *parent = nullptr);

    /// Null clears the pane.
    void follow(const TreeNode::Pointer &leaf);

private:
    class Picture;

    void look();
    void tell(const std::filesystem::path &path, const FileFacts &facts, const QImage &picture);
    void tellFacts(const FileFacts *facts);
    void tellPaths();

    PreviewLoader *m_loader;
    QTimer *m_settled;
    Picture *m_picture;
    QLabel *m_name;
    QLabel *m_facts;
    QLabel *m_mark;
    QLabel *m_pathsTitle;
    QLabel *m_paths;
    TreeNode::Pointer m_leaf;
};

} // namespace brightsweep
