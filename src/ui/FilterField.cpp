#include "ui/FilterField.h"

#include "ui/Theme.h"

#include <QShortcut>

#include <chrono>

namespace brightsweep {

namespace {

constexpr int fieldWidth = 204;
constexpr std::chrono::milliseconds settlesIn{120};

} // namespace

FilterField::FilterField(const QString &words, QWidget *page, QWidget *parent) : QLineEdit(parent) {
    setPlaceholderText(words);
    setAccessibleName(words);
    setClearButtonEnabled(true);
    theme::keepSize(this, fieldWidth, 0);
    m_settles.setSingleShot(true);
    m_settles.setInterval(settlesIn);
    connect(&m_settles, &QTimer::timeout, this, [this] { Q_EMIT settled(text()); });
    connect(this, &QLineEdit::textChanged, &m_settles, qOverload<>(&QTimer::start));
    connect(new QShortcut(QKeySequence::Find, page), &QShortcut::activated, this, [this] {
        setFocus(Qt::ShortcutFocusReason);
        selectAll();
    });
    auto *const escape =
        new QShortcut(Qt::Key_Escape, page, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, [this] {
        clear();
        Q_EMIT left();
    });
    // Without text the key is for others.
    escape->setEnabled(false);
    connect(this, &QLineEdit::textChanged, escape,
            [escape](const QString &text) { escape->setEnabled(!text.isEmpty()); });
}

void FilterField::reset() {
    clear();
    m_settles.stop();
}

} // namespace brightsweep
