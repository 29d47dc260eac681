#include "memory/ui/ProgramRow.h"

#include "core/Texts.h"
#include "core/UtilityFunction.h"
#include "ui/ElidedLabel.h"
#include "ui/IconTheme.h"
#include "ui/ImageProvider.h"
#include "ui/Mirrored.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPainter>

namespace brightsweep {

namespace {

constexpr int rowHeight = 32;
constexpr int iconSide = 20;

QIcon iconNamed(const QString &name) {
    const QIcon icon = name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
    if (!icon.isNull() && isSeenOnGround(icon))
        return icon;
    const QIcon usual = QIcon::fromTheme(QStringLiteral("application-x-executable"));
    return !usual.isNull() && isSeenOnGround(usual) ? usual
                                                    : imageNamed(QStringLiteral("memory.png"));
}

} // namespace

ProgramRow::ProgramRow(QWidget *parent)
    : QWidget(parent),
      m_icon(new QLabel(this)),
      m_name(new ElidedLabel(Qt::ElideRight, this)),
      m_processes(makePlainLabel("memory.processes", this)),
      m_size(makePlainLabel("memory.programSize", this)) {
    m_name->setObjectName(QStringLiteral("memory.program"));
    m_processes->setProperty("secondary", true);
    m_size->setProperty("number", true);
    m_size->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    theme::keep(this, [this] {
        m_processes->setFont(theme::font(11));
        m_size->setMinimumWidth(theme::textWidth({theme::widestSize()}, 12, true));
        setFixedHeight(theme::height(rowHeight));
        m_iconName = QString(); // the theme of icons may be another
    });
    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(2 * theme::grid, 0, 2 * theme::grid, 0);
    layout->setSpacing(2 * theme::grid);
    layout->addWidget(m_icon);
    layout->addWidget(m_name, 1);
    layout->addWidget(m_processes);
    layout->addWidget(m_size);
}

void ProgramRow::show(const ProgramMemory &program, const ProgramLook &look, std::uint64_t most) {
    m_name->setText(look.name);
    m_processes->setText(program.processes > 1 ? localizedText("PROCESS_COUNT", program.processes)
                                               : QString());
    m_size->setText(readersSize(UtilityFunction::covertCleanMemory(program.bytes)));
    if (m_iconName.isNull() || m_iconName != look.icon) {
        m_iconName = look.icon.isNull() ? QStringLiteral("") : look.icon;
        const int side = theme::height(iconSide);
        m_icon->setPixmap(iconNamed(m_iconName).pixmap(QSize(side, side), devicePixelRatioF()));
    }
    m_share = most == 0 ? 0 : double(program.bytes) / double(most);
    setVisible(true);
    update();
}

void ProgramRow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme::shareBar());
    QRect bar = rect().adjusted(0, 2, 0, -2);
    bar.setWidth(int(bar.width() * m_share));
    painter.drawRoundedRect(mirrored(rect(), bar), theme::grid, theme::grid);
}

} // namespace brightsweep
