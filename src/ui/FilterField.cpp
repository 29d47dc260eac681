#include "ui/FilterField.h"

#include "ui/Theme.h"

#include <QShortcut>

#include <chrono>

namespace brightsweep {

namespace {

constexpr int fieldWidth = 204;
constexpr int leastFieldWidth = 96; // where the window is narrow
constexpr std::chrono::milliseconds settlesIn{120};

} // namespace

FilterField::FilterField(const QString &words, QWidget *page, QWidget *parent) : QLineEdit(parent) {
    setPlaceholderText(words);
    setAccessibleName(words);
    setClearButtonEnabled(true);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    theme::keep(this, [this] {
        setMaximumWidth(theme::height(fieldWidth));
        updateGeometry();
    });
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
        // What it narrows is not shown either.
        if (!isVisible())
            return;
        clear();
        Q_EMIT left();
    });
    // Without text the key is for others.
    escape->setEnabled(false);
    connect(this, &QLineEdit::textChanged, escape,
            [escape](const QString &text) { escape->setEnabled(!text.isEmpty()); });
}

QSize FilterField::sizeHint() const {
    return {theme::height(fieldWidth), QLineEdit::sizeHint().height()};
}

QSize FilterField::minimumSizeHint() const {
    return {theme::height(leastFieldWidth), QLineEdit::minimumSizeHint().height()};
}

void FilterField::reset() {
    clear();
    m_settles.stop();
}

} // namespace brightsweep
