#pragma once

#include "foundation/CallQueue.h"

#include <QObject>
#include <QString>

#include <array>
#include <mutex>

namespace brightsweep {

class ScanViewController;

/// One of the six rows of the overview as data: tick, figures, progress. Images by name.
///
/// Main thread, but for observeFoundText(), which the scanner calls on its worker: the row takes
/// the newest size over on the main thread, in order, however many there were in between.
class V3MainListView : public QObject {
    Q_OBJECT

public:
    enum class Progress { Still, Running, Full };
    enum class Animation { Stopped, Running, RunningDown, Finished };

    V3MainListView(const QString &checkButtonImage, const QString &image, const QString &titleName,
                   const QString &sizeStr, int tag, bool cleanButtonHidden,
                   QObject *parent = nullptr);
    ~V3MainListView() override;

    // -- What it shows
    int listViewTag() const { return m_tag; }
    QString titleName() const { return m_title; }
    QString image() const { return m_image; }
    bool isStriped() const { return m_tag % 2 != 0; }
    bool isCheckBoxHidden() const { return m_checkBoxHidden; }
    QString checkBoxImage() const { return m_checkBoxImage; }
    bool isTicked() const;
    bool isCleanButtonHidden() const { return m_cleanButtonHidden; }
    bool isCleanButtonEnabled() const { return m_cleanButtonEnabled; }
    QString cleanButtonImage() const;
    Progress progress() const { return m_progress; }
    Animation animation() const { return m_animation; }
    QString sizeLabel() const { return m_sizeLabel; }
    QString cleanStrLabel() const { return QStringLiteral(QT_TRID_NOOP("Cleaned:")); }
    QString cleanSizeLabel() const { return m_cleanSizeLabel; }
    /// What of the category is not cleaned, and why; empty where that is nothing.
    QString note() const { return m_note; }

    // -- What the page tells it
    void setCheckBoxHidden(bool hidden);
    void initSizeLable();
    /// The cleaned size, not the found one.
    void setSizeStrLabelString(const QString &text);
    void startPrograssAnimation();
    void stopPrograssAnimation();
    void minishPrograss();
    void setAnimationFinish();
    /// 0 unticked, any other number ticked: a part shows as ticked here.
    void refCheckBoxInMainView(int state);

    void setNote(const QString &note);
    /// While false a click on the check box does nothing.
    void setEnabled(bool enabled) { m_enabled = enabled; }

    // -- What the user does
    void checkBoxAction();

    // -- Sizes
    /// Follows the controller's "filesSize" until unbind(), which comes after the worker's end.
    void bind(ScanViewController &controller);
    void unbind();
    /// The found size of a category, "0.00KB" above the last one.
    QString getFoundText(int tag) const;
    /// Any thread. The context tells which category the size is of; an unknown one is passed over.
    void observeFoundText(const QString &context, const QString &size);

Q_SIGNALS:
    void changed();

private:
    void takeOver();

    const int m_tag;
    const QString m_title;
    const QString m_image;
    bool m_enabled = true;
    bool m_checkBoxHidden = true;
    QString m_checkBoxImage;
    bool m_cleanButtonHidden = false;
    bool m_cleanButtonEnabled = true;
    Progress m_progress = Progress::Still;
    Animation m_animation = Animation::Stopped;
    QString m_sizeLabel;
    QString m_cleanSizeLabel;
    QString m_note;
    std::array<QString, 6> m_foundSizes; // only that of its own category is ever shown
    ScanViewController *m_controller = nullptr;

    std::mutex m_mutex; // guards what follows
    std::array<QString, 6> m_newSizes;
    bool m_pending = false;
    CallQueue m_calls;
};

} // namespace brightsweep
