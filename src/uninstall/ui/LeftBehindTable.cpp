#include "uninstall/ui/LeftBehindTable.h"

#include "cleaning/ui/CheckHeader.h"
#include "cleaning/ui/ResultRowDelegate.h"
#include "core/Texts.h"
#include "ui/Theme.h"
#include "uninstall/LeftBehindModel.h"

#include <QKeyEvent>

#include <algorithm>

namespace brightsweep {

namespace {

using Model = LeftBehindModel;

ResultRowForm rowForm() {
    ResultRowForm form;
    form.checkColumn = Model::checkBox;
    form.nameColumn = Model::Name;
    form.pathRole = Model::PathRole;
    form.directoryRole = Model::DirectoryRole;
    form.failureRole = Model::FailureRole;
    form.reasonRole = Model::FailureRole;
    form.noteRole = Model::NoteRole;
    return form;
}

bool canBeTicked(const Leftover &item) {
    return !item.ticked && !item.refusal;
}

} // namespace

LeftBehindTable::LeftBehindTable(LeftBehindController &page, LeftBehindModel &model,
                                 QWidget *parent)
    : ResultView(rowForm(), parent), m_page(page), m_list(model) {
    setObjectName(QStringLiteral("uninstall.leftBehind"));
    setAccessibleName(localizedText("Left behind"));
    setList(&m_list);
    setColumns(Model::Name, Model::Size,
               {{Model::checkBox, {}, false}, {Model::Size, theme::widestSize(), false}});
    setSortingEnabled(false);
    connect(m_header, &CheckHeader::checkBoxClicked, this, [this](bool isTicked) {
        std::vector<int> rows(std::size_t(m_list.rowCount()));
        for (std::size_t i = 0; i < rows.size(); ++i)
            rows[i] = int(i);
        m_page.tick(rows, isTicked);
    });
    connect(&m_page, &LeftBehindController::ticksChanged, this, &LeftBehindTable::followTicks);
    connect(&m_list, &QAbstractItemModel::modelReset, this, [this] {
        if (m_list.rowCount() > 0)
            setCurrentIndex(m_list.index(0, Model::checkBox));
        followTicks();
    });
}

void LeftBehindTable::followTicks() {
    const auto &items = m_page.items();
    const bool isAnyOff = std::any_of(items.begin(), items.end(), canBeTicked);
    m_header->setCheckState(m_page.tickedCount() == 0 ? Qt::Unchecked
                            : isAnyOff                ? Qt::PartiallyChecked
                                                      : Qt::Checked);
}

void LeftBehindTable::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Delete)
        m_page.removeButtonAction();
    else
        ResultView::keyPressEvent(event);
}

void LeftBehindTable::tickSelection() {
    std::vector<int> rows;
    for (const QModelIndex &row : selectionModel()->selectedRows())
        rows.push_back(row.row());
    const bool isAnyOff = std::any_of(rows.begin(), rows.end(), [this](int row) {
        return canBeTicked(m_page.items().at(std::size_t(row)));
    });
    m_page.tick(rows, isAnyOff);
}

void LeftBehindTable::act(const QModelIndex &index) {
    reveal(index);
}

} // namespace brightsweep
