#include "ui/AlertSheet.h"

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

QLabel *plainLabel(const QString &text, double size, bool bold, QWidget *parent) {
    auto *const label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    theme::keepFont(label, size, bold);
    theme::keep(label, [label] {
        const int room = label->screen()->availableSize().width() * 2 / 3;
        label->setFixedWidth(std::min(theme::height(statedWidth), room));
    });
    return label;
}

// No list that it holds makes the sheet higher than the screen has room for.
class Scrolled : public QScrollArea {
public:
    Scrolled(QLabel *words, int most) : m_most(most) {
        setFrameShape(NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
        setWidget(words);
        words->setAutoFillBackground(false);
    }

    QSize sizeHint() const override {
        const int width = widget()->maximumWidth();
        const int height = widget()->heightForWidth(width);
        const int bar = height > m_most ? verticalScrollBar()->sizeHint().width() : 0;
        return {width + bar, std::min(height, m_most)};
    }
    QSize minimumSizeHint() const override { return sizeHint(); }

private:
    const int m_most;
};

QWidget *scrolled(QLabel *words) {
    return new Scrolled(words, words->screen()->availableSize().height() / 3);
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
    column->addWidget(plainLabel(m_content.text, 13, true, this));
    if (!m_content.informativeText.isEmpty())
        column->addWidget(scrolled(plainLabel(m_content.informativeText, 12, false, this)));
    column->addSpacing(3 * theme::grid);
    auto *const row = new QHBoxLayout;
    row->setSpacing(2 * theme::grid);
    column->addLayout(row);
    addButtons(*row);
    layout->setSizeConstraint(QLayout::SetFixedSize);

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
            button->setToolTip(QStringLiteral("<qt>%1</qt>").arg(answer.toolTip.toHtmlEscaped()));
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
