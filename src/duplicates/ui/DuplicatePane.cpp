#include "duplicates/ui/DuplicatePane.h"

#include "cleaning/ui/FileIcons.h"
#include "core/RowWords.h"
#include "core/Texts.h"
#include "duplicates/DuplicateNodes.h"
#include "duplicates/ui/PreviewLoader.h"
#include "foundation/Paths.h"
#include "ui/ElidedLabel.h"
#include "ui/PageParts.h"
#include "ui/Theme.h"

#include <QFontDatabase>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int pictureHeight = 150;
constexpr int leastPictureHeight = 40;
constexpr int leastPathsHeight = 40;
constexpr int iconSide = 72;
constexpr int mostPaths = 40;
// Rows that the arrows run over are not looked at.
constexpr std::chrono::milliseconds settles{120};

// A path may be broken behind each slash.
QString html(const std::string &bytes) {
    return paths::display(bytes).toHtmlEscaped().replace(u'/', QStringLiteral("/&#8203;"));
}

QString factRow(const char *name, const QString &value) {
    return QStringLiteral("<tr><td style=\"color:%1; padding-right:12px\">%2</td><td>%3</td></tr>")
        .arg(theme::secondary().name(), localizedText(name).toHtmlEscaped(), value.toHtmlEscaped());
}

} // namespace

// The picture in the middle of its ground; else the first lines, else the icon.
class DuplicatePane::Picture : public QWidget {
public:
    using QWidget::QWidget;

    QSize sizeHint() const override { return {0, theme::height(pictureHeight)}; }

    void set(const QImage &image, const std::vector<std::string> &lines, const QIcon &icon) {
        m_image = image;
        m_lines = lines;
        m_icon = icon;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme::raised());
        painter.drawRoundedRect(rect(), theme::radius, theme::radius);
        const QRect room = rect().adjusted(theme::grid, theme::grid, -theme::grid, -theme::grid);
        if (!m_image.isNull()) {
            QSize size = m_image.size() / m_image.devicePixelRatio();
            if (size.width() > room.width() || size.height() > room.height())
                size.scale(room.size(), Qt::KeepAspectRatio);
            QRect place(QPoint(), size);
            place.moveCenter(rect().center());
            painter.drawImage(place, m_image);
        } else if (!m_lines.empty()) {
            paintLines(painter, room.adjusted(theme::grid, theme::grid, -theme::grid, 0));
        } else {
            const int side = theme::height(iconSide);
            QRect place(0, 0, side, side);
            place.moveCenter(rect().center());
            m_icon.paint(&painter, place);
        }
    }

private:
    void paintLines(QPainter &painter, QRect room) const {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSizeF(theme::font(9).pointSizeF());
        painter.setFont(font);
        painter.setPen(theme::text());
        painter.setClipRect(room);
        int y = room.top() + painter.fontMetrics().ascent();
        for (const std::string &line : m_lines) {
            if (y > room.bottom())
                return;
            painter.drawText(room.left(), y, paths::display(line));
            y += painter.fontMetrics().lineSpacing();
        }
    }

    QImage m_image;
    std::vector<std::string> m_lines;
    QIcon m_icon;
};

DuplicatePane::DuplicatePane(QWidget *parent)
    : QWidget(parent),
      m_loader(new PreviewLoader(this)),
      m_settled(new QTimer(this)),
      m_picture(new Picture(this)),
      m_name(new ElidedLabel(Qt::ElideMiddle, this)),
      m_facts(new QLabel(this)),
      m_mark(new QLabel(this)),
      m_pathsTitle(new QLabel(localizedText("DUP_PLACES"), this)),
      m_paths(new QLabel) {
    setObjectName(QStringLiteral("duplicates.pane"));
    setAccessibleName(localizedText("DUP_DETAILS"));
    m_name->setObjectName(QStringLiteral("duplicates.pane.name"));
    theme::keepFont(m_name, 13, true);
    m_mark->setWordWrap(true);
    m_mark->setTextFormat(Qt::PlainText);
    m_mark->setProperty("number", true);
    m_pathsTitle->setProperty("secondary", true);
    m_facts->setTextFormat(Qt::RichText);
    m_facts->setWordWrap(true);
    m_paths->setTextFormat(Qt::RichText);
    m_paths->setWordWrap(true);
    m_paths->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_paths->setObjectName(QStringLiteral("duplicates.pane.paths"));
    auto *const scrolled = makeScroll(m_paths, this);
    scrolled->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrolled->setFocusPolicy(Qt::NoFocus);
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, theme::grid, 0, theme::grid);
    layout->setSpacing(2 * theme::grid);
    for (QWidget *const widget : {static_cast<QWidget *>(m_picture), static_cast<QWidget *>(m_name),
                                  static_cast<QWidget *>(m_facts), static_cast<QWidget *>(m_mark),
                                  static_cast<QWidget *>(m_pathsTitle)})
        layout->addWidget(widget);
    layout->addWidget(scrolled, 1);
    theme::keep(this, [this, scrolled] {
        m_picture->setMinimumHeight(theme::height(leastPictureHeight));
        m_picture->setMaximumHeight(theme::height(pictureHeight));
        scrolled->setMinimumHeight(theme::height(leastPathsHeight));
    });
    m_settled->setSingleShot(true);
    m_settled->setInterval(settles);
    connect(m_settled, &QTimer::timeout, this, &DuplicatePane::look);
    connect(m_loader, &PreviewLoader::loaded, this, &DuplicatePane::tell);
    follow(nullptr);
}

void DuplicatePane::follow(const TreeNode::Pointer &leaf) {
    if (leaf == m_leaf && leaf)
        return tellPaths();
    m_leaf = leaf;
    for (QWidget *const widget : findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        widget->setVisible(leaf != nullptr);
    m_loader->forget();
    if (!leaf)
        return;
    const std::string &path = leafOf(*leaf).name();
    m_picture->set(
        {}, {},
        FileIcons().icon(path, leafOf(*leaf).searched().kind == SearchedFile::Kind::Bundle));
    m_name->setText(paths::display(paths::lastComponent(path)));
    tellFacts(nullptr);
    tellPaths();
    m_settled->start();
}

void DuplicatePane::look() {
    if (m_leaf && isVisible() && leafOf(*m_leaf).searched().kind == SearchedFile::Kind::File)
        m_loader->load(leafOf(*m_leaf).name(), m_picture->size() * devicePixelRatioF());
}

void DuplicatePane::tell(const std::filesystem::path &path, const FileFacts &facts,
                         const QImage &picture) {
    if (!m_leaf || leafOf(*m_leaf).name() != path.native())
        return;
    QImage sharp = picture;
    sharp.setDevicePixelRatio(devicePixelRatioF());
    m_picture->set(sharp, facts.lines, FileIcons().icon(path, false));
    tellFacts(&facts);
}

void DuplicatePane::tellFacts(const FileFacts *facts) {
    const DuplicateLeaf &leaf = leafOf(*m_leaf);
    QString rows = factRow(QT_TRID_NOOP("Size"), sizeWords(leaf.fileSize()));
    if (const auto date = leaf.ModificationDate())
        rows += factRow(QT_TRID_NOOP("Modified"), dateWords(*date));
    QString mark;
    if (facts && facts->isFile) {
        const std::uint64_t freed = facts->links > 1 ? 0 : facts->unshared.value_or(facts->stored);
        rows += factRow(QT_TRID_NOOP("DUP_FREED"), sizeWords(freed));
        if (facts->links > 1)
            mark = localizedText("DUP_HARD_LINK", std::size_t(facts->links));
        else if (freed < facts->stored)
            mark = localizedText("DUP_SHARES");
    } else if (facts) {
        mark = localizedText(facts->isLocal ? QT_TRID_NOOP("DUP_UNREADABLE")
                                            : QT_TRID_NOOP("DUP_NOT_LOCAL"));
    }
    m_facts->setText(
        QStringLiteral("<table cellspacing=\"0\" cellpadding=\"1\">%1</table>").arg(rows));
    m_mark->setText(mark);
    m_mark->setVisible(!mark.isEmpty());
}

// The folder that all share stands once.
void DuplicatePane::tellPaths() {
    const TreeNode *const group = m_leaf->nodeParent();
    if (!group)
        return;
    std::vector<std::string> all;
    std::size_t current = 0;
    const std::int32_t count = std::min(group->numberOfChildren(), mostPaths);
    for (std::int32_t i = 0; i < count; ++i) {
        const auto leaf = group->childAtIndex(i);
        if (leaf == m_leaf)
            current = all.size();
        all.push_back(leafOf(*leaf).name());
    }
    const PathDifference difference = differenceOf(all);
    QString text = QStringLiteral("<div style=\"color:%1\">%2</div>")
                       .arg(theme::secondary().name(),
                            paths::displayFromHome(difference.common).toHtmlEscaped());
    for (std::size_t i = 0; i < all.size(); ++i)
        text += QStringLiteral("<div style=\"margin-top:6px; color:%1\"><b>%2</b>%3</div>")
                    .arg((i == current ? theme::accent() : theme::text()).name(),
                         html(difference.paths[i].differs), html(difference.paths[i].tail));
    if (const std::int32_t more = group->numberOfChildren() - count; more > 0)
        text += QStringLiteral("<div style=\"margin-top:6px\">%1</div>")
                    .arg(localizedText("DUP_MORE_PLACES", std::size_t(more)).toHtmlEscaped());
    m_paths->setText(text);
}

} // namespace brightsweep
