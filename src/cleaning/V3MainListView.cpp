#include "cleaning/V3MainListView.h"

#include "cleaning/CleanCategories.h"
#include "cleaning/CleanNotifications.h"
#include "cleaning/ScanViewController.h"
#include "foundation/NotificationCenter.h"
#include "preferences/PreferenceViewController.h"

#include <algorithm>
#include <utility>

namespace brightsweep {

namespace {

const QString noSize = QStringLiteral("0.00KB");
const QString tickedImage = QStringLiteral("option_yes.png");
const QString untickedImage = QStringLiteral("option_no.png");

} // namespace

V3MainListView::V3MainListView(const QString &checkButtonImage, const QString &image,
                               const QString &titleName, const QString &sizeStr, int tag,
                               bool cleanButtonHidden, QObject *parent)
    : QObject(parent),
      m_tag(tag),
      m_title(titleName),
      m_image(image),
      m_checkBoxImage(checkButtonImage),
      m_cleanButtonHidden(cleanButtonHidden),
      m_sizeLabel(sizeStr),
      m_cleanSizeLabel(noSize) {
    m_foundSizes.fill(noSize);
}

V3MainListView::~V3MainListView() = default;

bool V3MainListView::isTicked() const {
    return m_checkBoxImage != untickedImage;
}

QString V3MainListView::cleanButtonImage() const {
    return m_cleanButtonEnabled ? QStringLiteral("clean_button.png")
                                : QStringLiteral("clean_button_d.png");
}

void V3MainListView::setCheckBoxHidden(bool hidden) {
    m_checkBoxHidden = hidden;
    if (hidden)
        m_sizeLabel = noSize;
    Q_EMIT changed();
}

void V3MainListView::setNote(const QString &note) {
    m_note = note;
    Q_EMIT changed();
}

void V3MainListView::initSizeLable() {
    m_sizeLabel = getFoundText(m_tag);
    m_cleanSizeLabel = noSize;
    Q_EMIT changed();
}

void V3MainListView::setSizeStrLabelString(const QString &text) {
    m_cleanSizeLabel = text;
    Q_EMIT changed();
}

void V3MainListView::startPrograssAnimation() {
    m_progress = Progress::Running;
    m_animation = Animation::Running;
    Q_EMIT changed();
}

void V3MainListView::stopPrograssAnimation() {
    m_progress = Progress::Full;
    m_animation = Animation::Stopped;
    Q_EMIT changed();
}

void V3MainListView::minishPrograss() {
    m_progress = Progress::Running;
    m_animation = Animation::RunningDown;
    Q_EMIT changed();
}

void V3MainListView::setAnimationFinish() {
    m_progress = Progress::Full;
    m_animation = Animation::Finished;
    Q_EMIT changed();
}

void V3MainListView::refCheckBoxInMainView(int state) {
    m_checkBoxImage = state == 0 ? untickedImage : tickedImage;
    m_cleanButtonEnabled = state != 0;
    Q_EMIT changed();
}

void V3MainListView::checkBoxAction() {
    if (!m_enabled)
        return;
    const int value = getDefaultsValue().value(m_tag).toInt();
    // A part counts as unticked: a click makes it whole.
    const int newValue = value == 1 ? 0 : 1;
    refCheckBoxInMainView(newValue);
    PreferenceViewController::setCategoryClicked(unsigned(m_tag), newValue);
    NotificationCenter::defaultCenter().post(
        updateSelectNumberNotification, nullptr,
        {{QStringLiteral("object"), QVariantMap{{QStringLiteral("rowNum"), m_tag}}}});
}

void V3MainListView::bind(ScanViewController &controller) {
    unbind();
    m_controller = &controller;
    const QString context = QLatin1String(cleanCategories[std::size_t(m_tag)].context);
    connect(
        &controller, &ScanViewController::filesSizeChanged, this,
        [this, context](const QString &size) { observeFoundText(context, size); },
        Qt::DirectConnection);
}

void V3MainListView::unbind() {
    if (!m_controller)
        return;
    m_controller->disconnect(this);
    m_controller = nullptr;
    // What the worker left behind belongs to this run, not to the next.
    takeOver();
}

QString V3MainListView::getFoundText(int tag) const {
    return tag >= 0 && tag < int(m_foundSizes.size()) ? m_foundSizes[std::size_t(tag)] : noSize;
}

void V3MainListView::observeFoundText(const QString &context, const QString &size) {
    const auto found =
        std::find_if(cleanCategories.begin(), cleanCategories.end(), [&](const auto &category) {
            return context == QLatin1String(category.context);
        });
    if (found == cleanCategories.end())
        return;
    const std::lock_guard lock(m_mutex);
    m_newSizes[std::size_t(found - cleanCategories.begin())] = size;
    if (!std::exchange(m_pending, true))
        m_calls.post([this] { takeOver(); });
}

void V3MainListView::takeOver() {
    std::array<QString, 6> sizes;
    {
        const std::lock_guard lock(m_mutex);
        m_pending = false;
        sizes.swap(m_newSizes);
    }
    for (std::size_t category = 0; category < sizes.size(); ++category) {
        if (sizes[category].isEmpty())
            continue;
        m_foundSizes[category] = sizes[category];
        NotificationCenter::defaultCenter().post(
            refNewTableViewSizeLabelNotification, nullptr,
            {{QStringLiteral("object"),
              QVariantMap{{QStringLiteral("rowNum"), QString::number(category)}}}});
    }
}

} // namespace brightsweep
