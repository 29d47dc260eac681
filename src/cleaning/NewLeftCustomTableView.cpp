#include "cleaning/NewLeftCustomTableView.h"

#include "cleaning/CustomTableView.h"
#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"

namespace brightsweep {

namespace {

constexpr std::array rowOfPosition = {0, 2, 4, 5, 6};
constexpr int firstY = 444;
constexpr int rowHeight = 39;
const QString backgroundNotification = QStringLiteral("updateRowForBackGround");

} // namespace

QString NewMyMacListCell::listImage() const {
    return isClicked ? QStringLiteral("list_hover.png") : QStringLiteral("list.png");
}

NewLeftCustomTableView::NewLeftCustomTableView(QObject *parent) : QObject(parent) {
    for (int position = 0; position < int(m_cells.size()); ++position) {
        const int row = reSetTag(position);
        m_cells[std::size_t(position)] = {row, position == 0, getLeftCellTitle(row),
                                          firstY - rowHeight * position};
    }
    NotificationCenter::defaultCenter().addObserver(
        this, backgroundNotification, [this](const Notification &notification) {
            clickedStateShow(notification.userInfo.value(QStringLiteral("object")).toInt());
        });
}

NewLeftCustomTableView::~NewLeftCustomTableView() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

int NewLeftCustomTableView::reSetTag(int position) {
    return position >= 0 && position < int(rowOfPosition.size())
               ? rowOfPosition[std::size_t(position)]
               : 0;
}

void NewLeftCustomTableView::mouseDown(int position) {
    const int row = reSetTag(position);
    NotificationCenter::defaultCenter().post(backgroundNotification, this,
                                             {{QStringLiteral("object"), row}});
    UtilityFunction::callSelectNotificationForMainWindowLeft(row);
}

void NewLeftCustomTableView::clickedStateShow(int rowTag) {
    for (NewMyMacListCell &cell : m_cells)
        cell.isClicked = cell.rowTag == rowTag;
    Q_EMIT changed();
}

} // namespace brightsweep
