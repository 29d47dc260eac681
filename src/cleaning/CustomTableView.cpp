#include "cleaning/CustomTableView.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/ItemSizes.h"
#include "core/CheckImage.h"
#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "foundation/NotificationCenter.h"
#include "foundation/SaturatingSum.h"
#include "preferences/PreferenceViewController.h"

#include <algorithm>

namespace brightsweep {

namespace {

const QString noSize = QStringLiteral("0.00KB");

constexpr std::array<const char *, 9> iconArr = {
    "my_mac.png",      "system_caches_m.png", "user_caches_m.png",     "system_logs_m.png",
    "user_logs_m.png", "user_trash_m.png",    "download_folder_m.png", "uninstall.png",
    "disk.png",
};
constexpr int refusedRow = 7;

// The step of the progress image wraps within this range once it has passed it.
constexpr int wrapsFrom = 81;
constexpr int wrapsTo = 50;
constexpr int mostProgress = 100;
constexpr int updatesPerReload = 100;

QString tickImage(int state) {
    return QLatin1String(checkImage(state == 0   ? Qt::Unchecked
                                    : state == 2 ? Qt::PartiallyChecked
                                                 : Qt::Checked));
}

QString progressBar(int percent) {
    return QStringLiteral("%1_progress_bar.png").arg(percent);
}

} // namespace

QString getLeftCellTitle(int row) {
    if (row >= 1 && row <= int(categoryCount))
        return QLatin1String(cleanCategories[std::size_t(row - 1)].name);
    return row == 8   ? QStringLiteral(QT_TRID_NOOP("Uninstall Applications"))
           : row == 9 ? QStringLiteral(QT_TRID_NOOP("Free Space Monitor"))
                      : QStringLiteral(QT_TRID_NOOP("My Mac"));
}

CustomTableView::CustomTableView(QObject *parent)
    : QAbstractListModel(parent), m_selectArray(getDefaultsValue()) {
    comeBackStringValue();
    for (int row = 0; row < int(dataArr.size()); ++row) {
        TableViewCellItemObj &cell = dataArr[std::size_t(row)];
        cell.titleName = getLeftCellTitle(row);
        cell.iconImage = QLatin1String(iconArr[std::size_t(row)]);
        if (row > 0)
            cell.checkBoxImage = tickImage(m_selectArray[row - 1].toInt());
    }
    NotificationCenter::defaultCenter().addObserver(
        this, changeCheckBoxNotification, [this](const Notification &notification) {
            changeCheckBox(notification.userInfo.value(QStringLiteral("flag")).toBool(),
                           notification.userInfo.value(QStringLiteral("tag")).toInt());
        });
}

CustomTableView::~CustomTableView() {
    NotificationCenter::defaultCenter().removeObserver(this);
}

void CustomTableView::comeBackStringValue() {
    m_foundSizes.fill(noSize);
    m_totalScanSize = 0;
    m_updates = 0;
    reload();
}

std::uint64_t CustomTableView::totalBytes() const {
    std::uint64_t sum = 0;
    for (const QString &size : m_foundSizes)
        sum = addSaturating(sum, UtilityFunction::getVolSpaceFromString(size));
    return sum;
}

QString CustomTableView::getTotalSize() const {
    const std::uint64_t sum = totalBytes();
    return sum == 0 ? noSize : UtilityFunction::convertVolSpace(sum);
}

QString CustomTableView::getTotalSizeImage() const {
    if (m_totalSelectNum >= cleanIsFinished)
        return progressBar(mostProgress);
    // In doubles, so that nothing ticked needs no guard: no number and none below 0 show as 0.
    const double gone = double(m_totalScanSize) - double(totalBytes());
    const double percent = gone * 100 / double(m_selectTotalSize);
    return progressBar(percent > mostProgress ? mostProgress : percent > 0 ? int(percent) : 0);
}

bool CustomTableView::shouldSelectRow(int row) {
    if (row == refusedRow || !m_rowsEnabled)
        return false;
    m_clickRow = row;
    PreferenceViewController::setLastClickRow(row);
    reload();
    NotificationCenter::defaultCenter().post(
        shouldSelectRowNotification, nullptr,
        {{QStringLiteral("object"), QVariantList{QVariant(m_selectArray), row}}});
    return true;
}

void CustomTableView::checkBoxClicked(int tag) {
    if (tag < 1 || tag > int(categoryCount) || !m_ticksEnabled)
        return;
    const bool state = storedSelection(unsigned(tag - 1)) != 0;
    // Stored first, so that whoever hears of it reads what it is now.
    PreferenceViewController::setCategoryClicked(unsigned(tag - 1), state ? 0 : 1);
    NotificationCenter::defaultCenter().post(
        changeCheckBoxNotification, nullptr,
        {{QStringLiteral("tag"), tag}, {QStringLiteral("flag"), state}});
}

void CustomTableView::changeCheckBox(bool flag, int tag) {
    if (tag < 1 || tag > int(categoryCount))
        return;
    dataArr[std::size_t(tag)].checkBoxImage = tickImage(flag ? 0 : 1);
    m_selectArray[tag - 1] = flag ? QStringLiteral("0") : QStringLiteral("1");
    NotificationCenter::defaultCenter().post(
        updateSelectNumberNotification, nullptr,
        {{QStringLiteral("object"), m_selectArray}, {QStringLiteral("rowNum"), tag - 1}});
    reload();
}

void CustomTableView::showStates(const std::array<int, 6> &states) {
    bool isOther = false;
    for (std::size_t category = 0; category < states.size(); ++category) {
        QString &image = dataArr[category + 1].checkBoxImage;
        const QString now = tickImage(states[category]);
        isOther = isOther || image != now;
        image = now;
        m_selectArray[qsizetype(category)] = QString::number(states[category]);
    }
    if (isOther)
        reload();
}

void CustomTableView::setProImageNum(int number) {
    m_proImageNum = number;
    reload();
}

void CustomTableView::setIsCleanInfo(bool isClean) {
    m_isCleanInfo = isClean;
    // What there was before a clean is what its progress is measured against.
    m_totalScanSize = totalBytes();
    reload();
}

void CustomTableView::setTotalSelectNum(int number) {
    m_totalSelectNum = number;
    reload();
}

void CustomTableView::reload() {
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void CustomTableView::observeFoundText(const QString &context, const QString &size) {
    for (std::size_t category = 0; category < m_foundSizes.size(); ++category) {
        if (context != QLatin1String(cleanCategories[category].context))
            continue;
        m_foundSizes[category] = size;
        m_proImageNum =
            m_proImageNum == wrapsFrom ? wrapsTo : std::min(m_proImageNum + 1, mostProgress);
        if (++m_updates % updatesPerReload == 0)
            reload();
    }
}

int CustomTableView::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(dataArr.size());
}

QString CustomTableView::foundText(int row) const {
    return row == 0 ? getTotalSize() : m_foundSizes[std::size_t(row - 1)];
}

QString CustomTableView::progressImage(int row) const {
    if (m_isCleanInfo)
        return getTotalSizeImage();
    constexpr int shownFrom = 7;
    const bool nothing = foundText(row) == noSize && m_proImageNum < shownFrom;
    return progressBar(nothing ? 0 : m_proImageNum);
}

QVariant CustomTableView::data(const QModelIndex &index, int role) const {
    if (!index.isValid())
        return {};
    const int row = index.row();
    const TableViewCellItemObj &cell = dataArr[std::size_t(row)];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return localizedText(cell.titleName);
    case IconImageRole:
        return cell.iconImage;
    case BackgroundImageRole:
        // The row above the clicked one has no line, which the clicked one draws.
        return row == m_clickRow       ? QStringLiteral("list_hover.png")
               : row + 1 == m_clickRow ? QStringLiteral("")
                                       : QStringLiteral("list.png");
    case ProgressImageRole:
        return progressImage(row);
    case FoundTextRole:
        return foundText(row);
    case CheckImageRole:
        return cell.checkBoxImage;
    default:
        return {};
    }
}

} // namespace brightsweep
