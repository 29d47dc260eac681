#include "loginitems/ui/LoginItemsPanel.h"

#include "core/Texts.h"
#include "foundation/Identity.h"
#include "loginitems/LoginItemController.h"
#include "loginitems/ui/LoginItemView.h"
#include "loginitems/ui/SystemItemsBox.h"
#include "ui/FolderChoice.h"
#include "ui/ImageProvider.h"
#include "ui/NoticeRow.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHideEvent>
#include <QLabel>
#include <QPushButton>
#include <QStandardPaths>

namespace brightsweep {

namespace {

constexpr std::chrono::milliseconds waitingIsTold{600};
constexpr int addImageSide = 16;

// Where applications have their entries, if the folder that is meant is not on this machine.
QString chooserFolder(const std::filesystem::path &folder) {
    std::error_code error;
    if (!folder.empty() && std::filesystem::is_directory(folder, error))
        return QFile::decodeName(QByteArray::fromStdString(folder.native()));
    const QStringList applications =
        QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    return applications.isEmpty() ? QString() : applications.constLast();
}

} // namespace

LoginItemsPanel::LoginItemsPanel(LoginItemController &controller, QWidget *parent)
    : QWidget(parent),
      m_controller(controller),
      tableView(new LoginItemView(controller, this)),
      m_waiting(new NoticeRow("login.waiting", this)),
      m_failed(new NoticeRow("login.failed", this)) {
    m_waiting->tell({});
    m_failed->tell({});
    connect(m_failed->addButton("login.failedClose", localizedText("CLOSE")), &QPushButton::clicked,
            this, [this] { m_failed->tell({}); });
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHead());
    auto *const notices = new QVBoxLayout;
    notices->setContentsMargins(4 * theme::grid, 0, 4 * theme::grid, 0);
    notices->setSpacing(2 * theme::grid);
    notices->addWidget(m_waiting);
    notices->addWidget(m_failed);
    auto *const table = new QHBoxLayout;
    table->setContentsMargins(2 * theme::grid, 0, 2 * theme::grid, 0);
    table->addWidget(tableView);
    layout->addLayout(table, 1);
    // Below the rows, so that none moves when something is told.
    layout->addLayout(notices);
    auto *const system = new QVBoxLayout;
    system->setContentsMargins(3 * theme::grid, theme::grid, 3 * theme::grid, 2 * theme::grid);
    system->addWidget(new SystemItemsBox(controller, this));
    layout->addLayout(system);
    layout->addWidget(makeHairline(this));
    layout->addWidget(makeBottom());
    setFocusProxy(tableView);

    m_patience.setSingleShot(true);
    m_patience.setInterval(waitingIsTold);
    connect(&m_patience, &QTimer::timeout, this,
            [this] { m_waiting->tell(localizedText("LOGIN_WAITING")); });
    connect(&controller, &LoginItemController::waitingChanged, this,
            &LoginItemsPanel::followWaiting);
    connect(&controller, &LoginItemController::failed, m_failed, &NoticeRow::tell);
    connect(&controller, &LoginItemController::failureIsOver, this, [this] { m_failed->tell({}); });
    connect(&controller, &LoginItemController::askForLoginItems, this, &LoginItemsPanel::ask);
    connect(&controller, &LoginItemController::askForLoginFolder, this,
            [this](const QString &dialogTitle) {
                FolderChoice::ask(this, dialogTitle, homeFolder(),
                                  [this](const std::filesystem::path &folder) {
                                      m_controller.addPaths({folder});
                                  });
            });
    followWaiting();
}

QWidget *LoginItemsPanel::makeHead() {
    auto *const head = new QWidget(this);
    auto *const title = new QLabel(localizedText("Login Items"), head);
    theme::keepFont(title, 16, true);
    auto *const sentence = makePlainLabel("login.sentence", head);
    sentence->setText(localizedText("LOGIN_SENTENCE"));
    sentence->setProperty("secondary", true);
    sentence->setWordWrap(true);
    auto *const layout = new QVBoxLayout(head);
    layout->setContentsMargins(4 * theme::grid, 3 * theme::grid, 4 * theme::grid, 2 * theme::grid);
    layout->setSpacing(theme::grid);
    layout->addWidget(title);
    layout->addWidget(sentence);
    return head;
}

QWidget *LoginItemsPanel::makeBottom() {
    auto *const bottom = new QWidget(this);
    bottom->setObjectName(QStringLiteral("loginItemBottom"));
    auto *const add = new QPushButton(localizedText("LOGIN_ADD"), bottom);
    add->setObjectName(QStringLiteral("login.add"));
    add->setIcon(imageNamed(QStringLiteral("add.png")));
    add->setToolTip(localizedText("Add login item"));
    theme::keep(add, [add] {
        add->setIconSize({theme::height(addImageSide), theme::height(addImageSide)});
    });
    auto *const addFolder = new QPushButton(localizedText("LOGIN_ADD_FOLDER"), bottom);
    addFolder->setObjectName(QStringLiteral("login.addFolder"));
    auto *const drop = makePlainLabel("login.drop", bottom);
    drop->setText(localizedText("LOGIN_DROP"));
    drop->setProperty("secondary", true);
    drop->setWordWrap(true);
    auto *const row = makeBottomRow(bottom);
    row->addWidget(add);
    row->addWidget(addFolder);
    row->addWidget(drop, 1);
    connect(add, &QPushButton::clicked, this, [this] {
        m_failed->tell({});
        m_controller.addLoginItems();
    });
    connect(addFolder, &QPushButton::clicked, this, [this] {
        m_failed->tell({});
        m_controller.addLoginFolder();
    });
    return bottom;
}

void LoginItemsPanel::hideEvent(QHideEvent *event) {
    QWidget::hideEvent(event);
    // A window that is only out of sight is shown as it was.
    if (!event->spontaneous())
        m_failed->tell({});
}

QSize LoginItemsPanel::sizeHint() const {
    return theme::leastPanel();
}

void LoginItemsPanel::ask(const QString &title, const QString &prompt,
                          const std::filesystem::path &folder) {
    if (!isVisible())
        return;
    auto *const dialog = new QFileDialog(window(), title, chooserFolder(folder));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setLabelText(QFileDialog::Accept, prompt);
    connect(dialog, &QFileDialog::filesSelected, this, [this](const QStringList &files) {
        std::vector<std::filesystem::path> paths;
        for (const QString &file : files)
            paths.emplace_back(QFile::encodeName(file).toStdString());
        m_controller.addPaths(std::move(paths));
    });
    dialog->open();
}

// An answer that comes at once is not worth a word.
void LoginItemsPanel::followWaiting() {
    if (m_controller.isWaiting()) {
        if (!m_patience.isActive())
            m_patience.start();
        return;
    }
    m_patience.stop();
    m_waiting->tell({});
}

} // namespace brightsweep
