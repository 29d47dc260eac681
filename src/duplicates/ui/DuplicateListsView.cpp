#include "duplicates/ui/DuplicateListsView.h"

#include "core/Texts.h"
#include "duplicates/DuplicateOutlineModel.h"
#include "ui/LeftCell.h"

#include <QAbstractListModel>

#include <array>

namespace brightsweep {

namespace {

using Page = SameFileDeleteViewController;

constexpr int leastWidth = 168;

// In the order of the lists.
constexpr std::array images = {
    "class_all.png",      "class_documents.png", "class_videos.png", "class_music.png",
    "class_archives.png", "class_pictures.png",  "class_others.png",
};

class Lists : public QAbstractListModel {
public:
    Lists(Page &page, QObject *parent) : QAbstractListModel(parent), m_page(page) {
        connect(&page, &Page::sizesChanged, this,
                [this] { Q_EMIT dataChanged(index(0), index(rowCount({}) - 1)); });
    }

    int rowCount(const QModelIndex &parent) const override {
        return parent.isValid() ? 0 : int(duplicateLists.size());
    }

    QVariant data(const QModelIndex &index, int role) const override {
        if (!index.isValid())
            return {};
        const QString name = localizedText(duplicateLists[std::size_t(index.row())].title);
        const QString size = readersSize(m_page.sizeOfRow(index.row()));
        switch (role) {
        case Qt::DisplayRole:
            return name;
        case Qt::DecorationRole:
            return QLatin1String(images[std::size_t(index.row())]);
        case LeftCell::SizeRole:
            return size;
        case Qt::AccessibleTextRole:
            return QString(name + QStringLiteral(", ") + size);
        default:
            return {};
        }
    }

private:
    Page &m_page;
};

using DuplicationLeftCell = LeftCell;

} // namespace

DuplicateListsView::DuplicateListsView(Page &page, DuplicateOutlineModel &outline, QWidget *parent)
    : LeftList("duplicates.lists", parent), m_outline(outline) {
    setRows(new Lists(page, this), new DuplicationLeftCell(this), {leastWidth, false});
    const auto follow = [this, &page] { showRow(page.remberWitchSelect()); };
    connect(&page, &Page::listChanged, this, follow);
    follow();
}

void DuplicateListsView::chosen(int row) {
    m_outline.refViewBgColor(row);
}

} // namespace brightsweep
