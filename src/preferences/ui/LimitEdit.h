#pragma once

#include "preferences/PreferenceViewController.h"

#include <QLineEdit>

namespace brightsweep {

/// The field of a size limit: it takes digits alone, says in a tool tip why it refuses anything
/// else, and stores at every keystroke. Main thread.
class LimitEdit : public QLineEdit {
    Q_OBJECT

public:
    LimitEdit(const char *name, const LimitField &field, QWidget *parent);

    /// Shows a stored limit; what is being typed and means the same stays.
    void setLimit(std::int64_t limit);

private:
    class Validator;

    void edited(const QString &text);
    void refuse(const QString &why);

    const LimitField m_field;
    QString m_accepted; ///< what stands in the field
};

} // namespace brightsweep
