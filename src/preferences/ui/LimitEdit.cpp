#include "preferences/ui/LimitEdit.h"

#include "core/Texts.h"
#include "ui/Theme.h"

#include <QTimer>
#include <QToolTip>
#include <QValidator>

#include <algorithm>

namespace brightsweep {

namespace {

constexpr int fieldWidth = 72;

} // namespace

// Judges what is put into the text that was there before.
class LimitEdit::Validator final : public QValidator {
public:
    explicit Validator(LimitEdit &edit) : QValidator(&edit), m_edit(edit) {}

    State validate(QString &input, int &position) const override {
        const QString &before = m_edit.m_accepted;
        const auto common = std::mismatch(
            input.begin(), input.begin() + std::min<qsizetype>(position, input.size()),
            before.begin(), before.end());
        QString why;
        if (PreferenceViewController::isPartialStringValid(input, position,
                                                           common.first - input.begin(), &why))
            return Acceptable;
        m_edit.refuse(localizedText(why));
        return Invalid;
    }

private:
    LimitEdit &m_edit;
};

LimitEdit::LimitEdit(const char *name, const LimitField &field, QWidget *parent)
    : QLineEdit(parent), m_field(field) {
    setObjectName(QLatin1String(name));
    setAlignment(Qt::AlignRight);
    setInputMethodHints(Qt::ImhDigitsOnly);
    theme::keepSize(this, fieldWidth, 0);
    setValidator(new Validator(*this));
    connect(this, &QLineEdit::textEdited, this, &LimitEdit::edited);
    connect(this, &QLineEdit::editingFinished, this,
            [this] { setText(QString::number(text().toLongLong())); });
    connect(this, &QLineEdit::textChanged, this,
            [this](const QString &text) { m_accepted = text; });
}

void LimitEdit::refuse(const QString &why) {
    setToolTip(why);
    // Not from within the change of the text.
    QTimer::singleShot(
        0, this, [this, why] { QToolTip::showText(mapToGlobal(QPoint(0, height())), why, this); });
}

void LimitEdit::setLimit(std::int64_t limit) {
    // Of two texts that mean the same the user's stays, and setting the same one again would take
    // the selection away.
    const QString words = QString::number(limit);
    if (text() != words && (!isModified() || text().toLongLong() != limit))
        setText(words);
}

void LimitEdit::edited(const QString &text) {
    setToolTip({});
    const QString kept = PreferenceViewController::controlTextDidChange(m_field.tag, text);
    if (kept != text)
        setText(kept);
}

} // namespace brightsweep
