#include "ui/AlertSheet.h"

#include "core/RowWords.h"
#include "core/Texts.h"
#include "ui/ImageProvider.h"
#include "ui/SheetShade.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int imageSide = 48;
constexpr int statedWidth = 360;
constexpr double wordsSize = 12;
constexpr int titleBarHeight = 32;
constexpr int leastWordsHeight = 36; // two lines

// All labels of a sheet have one width: that of the list, if there is one.
QLabel *plainLabel(const QString &text, double size, bool bold, const QStringList &list,
                   QWidget *parent) {
    auto *const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    theme::keepFont(label, size, bold);
    theme::keep(label, [label, list] {
        const int room = label->screen()->availableSize().width() * 2 / 3;
        const int whole = theme::textWidth(list, wordsSize) + 1;
        label->setFixedWidth(std::min(std::max(theme::height(statedWidth), whole), room));
    });
    return label;
}

// Words that take no more than a height, and are scrolled above it.
class Scrolled : public QScrollArea {
public:
    explicit Scrolled(QLabel *words) {
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
        setWidget(words);
        words->setAutoFillBackground(false);
    }

    void setMost(int most) {
        m_most = most;
        updateGeometry();
    }

    QSize sizeHint() const override {
        const int width = widget()->maximumWidth();
        const int height = widget()->heightForWidth(width);
        const int bar = height > m_most ? verticalScrollBar()->sizeHint().width() : 0;
        return {width + bar, std::min(height, m_most)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int m_most = QWIDGETSIZE_MAX;
};

// However much there is to explain, the sheet with its title bar takes half the screen at most.
void limit(QDialog &sheet, Scrolled &words) {
    words.setMost(QWIDGETSIZE_MAX);
    const int rest = sheet.layout()->totalSizeHint().height() - words.sizeHint().height();
    const int room = sheet.screen()->availableSize().height() / 2 - titleBarHeight - rest;
    words.setMost(std::max(room, theme::height(leastWordsHeight)));
}

} // namespace

AlertSheet *AlertSheet::show(AlertContent content, QWidget *window) {
    const bool attached = window && window->isVisible();
    auto *const sheet = new AlertSheet(std::move(content), attached ? window : nullptr);
    if (attached) {
        shade(*sheet);
        sheet->open();
    } else {
        sheet->QDialog::show();
        sheet->activateWindow();
    }
    return sheet;
}

AlertSheet::AlertSheet(AlertContent content, QWidget *window)
    : QDialog(window, window ? Qt::Sheet : Qt::Dialog), m_content(std::move(content)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(QStringLiteral("alert"));
    setWindowTitle(QStringLiteral("Brightsweep"));
    setAccessibleDescription(m_content.text);
    if (m_content.buttons.empty())
        m_content.buttons.push_back({localizedText("OK"), false, {}, false, {}});
    const auto side = [](const AlertButton &button) {
        return button.removes ? 0 : button.keepsOpen ? 2 : 1;
    };
    std::stable_sort(m_content.buttons.begin(), m_content.buttons.end(),
                     [&](const auto &a, const auto &b) { return side(a) < side(b); });
    setProperty("sheet", true);

    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(6 * theme::grid, 6 * theme::grid, 6 * theme::grid, 5 * theme::grid);
    layout->setSpacing(5 * theme::grid);
    if (imageExists(m_content.imageName)) {
        auto *const image = new QLabel(this);
        image->setPixmap(
            pixmapNamed(m_content.imageName, {imageSide, imageSide}, devicePixelRatioF()));
        layout->addWidget(image, 0, Qt::AlignTop);
    }
    auto *const column = new QVBoxLayout;
    column->setSpacing(2 * theme::grid);
    layout->addLayout(column);
    const QStringList list =
        m_content.isList ? m_content.informativeText.split(u'\n') : QStringList();
    column->addWidget(plainLabel(m_content.text, 13, true, list, this));
    Scrolled *words = nullptr;
    if (!m_content.informativeText.isEmpty()) {
        words = new Scrolled(plainLabel(m_content.informativeText, wordsSize, false, list, this));
        column->addWidget(words);
    }
    column->addSpacing(3 * theme::grid);
    auto *const row = new QHBoxLayout;
    row->setSpacing(2 * theme::grid);
    column->addLayout(row);
    addButtons(*row);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    if (words)
        theme::keep(this, [this, words] { limit(*this, *words); });

    connect(this, &QDialog::finished, this, [this] {
        if (m_answer)
            m_answer();
        else if (m_content.calledOff)
            m_content.calledOff();
    });
}

void AlertSheet::addButtons(QHBoxLayout &row) {
    QPushButton *preferred = nullptr;
    row.addStretch(1);
    for (const AlertButton &answer : m_content.buttons) {
        auto *const button = new QPushButton(this);
        button->setText(QString(answer.label).replace(u'&', QStringLiteral("&&")));
        button->setAccessibleName(answer.label);
        button->setObjectName(QStringLiteral("alert.") + answer.label);
        button->setProperty("danger", answer.removes);
        button->setAutoDefault(!answer.removes);
        row.insertWidget(1, button);
        if (!answer.toolTip.isEmpty()) {
            button->setToolTip(plainToolTip({answer.toolTip}));
            button->setAccessibleDescription(answer.toolTip);
        }
        if (!preferred && !answer.removes && !answer.keepsOpen) {
            preferred = button;
            button->setProperty("primary", true);
        }
        connect(button, &QPushButton::clicked, this, [this, &answer] {
            if (answer.keepsOpen) {
                answer.act();
                return;
            }
            m_answer = answer.act ? answer.act : [] {};
            accept();
        });
    }
    if (preferred) {
        preferred->setDefault(true);
        preferred->setFocus();
    }
}

} // namespace brightsweep
