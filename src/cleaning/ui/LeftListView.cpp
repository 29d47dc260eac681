#include "cleaning/ui/LeftListView.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/CustomTableView.h"
#include "cleaning/NewMainViewController.h"
#include "cleaning/V3MainListView.h"
#include "core/CheckImage.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "ui/LeftCell.h"
#include "ui/Mirrored.h"

#include <QIdentityProxyModel>
#include <QKeyEvent>
#include <QMouseEvent>

namespace brightsweep {

namespace {

constexpr int leastWidth = 200;

// The roles that the rows are painted and spoken by.
class Rows : public QIdentityProxyModel {
public:
    explicit Rows(LeftListView *list) : QIdentityProxyModel(list), m_list(*list) {}

    QVariant data(const QModelIndex &index, int role) const override {
        if (role == Qt::CheckStateRole)
            return tick(index);
        if (role == Qt::DecorationRole)
            return index.data(CustomTableView::IconImageRole);
        if (role == LeftCell::SizeRole)
            return readersSize(m_list.foundText(index.row()));
        const QVariant data = QIdentityProxyModel::data(index, role);
        if (role != Qt::AccessibleTextRole)
            return data;
        QString words =
            data.toString() + QStringLiteral(", ") + readersSize(m_list.foundText(index.row()));
        // Qt tells screen readers of Qt::Checked in an item view, but not of Qt::PartiallyChecked.
        if (tick(index) == Qt::PartiallyChecked)
            words += QStringLiteral(", ") + localizedText("PARTLY_TICKED");
        return words;
    }

    Qt::ItemFlags flags(const QModelIndex &index) const override {
        const Qt::ItemFlags flags = QIdentityProxyModel::flags(index);
        return tick(index).isValid() ? flags | Qt::ItemIsUserCheckable : flags;
    }

private:
    QVariant tick(const QModelIndex &index) const {
        const QString image = m_list.checkImage(index.row());
        for (const auto state : {Qt::Unchecked, Qt::PartiallyChecked, Qt::Checked}) {
            if (image == QLatin1String(brightsweep::checkImage(state)))
                return state;
        }
        return {};
    }

    LeftListView &m_list;
};

} // namespace

LeftListView::LeftListView(NewMainViewController &controller, QWidget *parent)
    : LeftList("leftList", parent), m_controller(controller) {
    auto *const rows = new Rows(this);
    rows->setSourceModel(&controller.customTableView());
    setRows(rows, new LeftCell(this), {leastWidth, true});
    for (unsigned category = 0; category < categoryCount; ++category)
        connect(&controller.row(category), &V3MainListView::changed, viewport(),
                qOverload<>(&QWidget::update));
    connect(&controller, &NewMainViewController::partsChanged, this, &LeftListView::followPage);
    followPage();
}

QString LeftListView::foundText(int row) const {
    if (row > 0)
        return m_controller.row(unsigned(row - 1)).sizeLabel();
    std::uint64_t bytes = 0;
    for (unsigned category = 0; category < categoryCount; ++category)
        bytes += UtilityFunction::getVolSpaceFromString(m_controller.row(category).sizeLabel());
    return UtilityFunction::convertVolSpace(bytes);
}

QString LeftListView::checkImage(int row) const {
    if (row == 0 || m_controller.row(unsigned(row - 1)).isCheckBoxHidden())
        return {};
    return model()->index(row, 0).data(CustomTableView::CheckImageRole).toString();
}

bool LeftListView::tick(int row) {
    if (checkImage(row).isEmpty())
        return false;
    m_controller.customTableView().checkBoxClicked(row);
    return true;
}

// The controller may have refused the row, or another one has been chosen from a menu.
void LeftListView::followPage() {
    showRow(m_controller.selectRowNum());
}

void LeftListView::chosen(int row) {
    m_controller.customTableView().shouldSelectRow(row);
    followPage();
}

void LeftListView::mousePressEvent(QMouseEvent *event) {
    const QPoint place = event->position().toPoint();
    const QModelIndex index = indexAt(place);
    const QRect row = visualRect(index);
    const QRect box = mirrored(row, LeftCell::checkBoxOf(row)).adjusted(-6, -6, 6, 6);
    if (event->button() == Qt::LeftButton && index.isValid() && box.contains(place) &&
        tick(index.row()))
        return;
    QListView::mousePressEvent(event);
    // QListView selects the clicked row after its signals, also where the click was refused.
    followPage();
}

void LeftListView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space && currentIndex().isValid())
        tick(currentIndex().row());
    else
        QListView::keyPressEvent(event);
}

} // namespace brightsweep
