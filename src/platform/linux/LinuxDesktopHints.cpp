#include "platform/linux/LinuxDesktopHints.h"

#include "foundation/Identity.h"
#include "foundation/Paths.h"
#include "foundation/SmallFile.h"
#include "foundation/Trimmed.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QFile>

#include <charconv>
#include <filesystem>
#include <utility>

namespace brightsweep {

namespace {

using Namespaces = QMap<QString, QVariantMap>;

constexpr char portalName[] = "org.freedesktop.portal.Desktop";
constexpr char portalPath[] = "/org/freedesktop/portal/desktop";
constexpr char portalInterface[] = "org.freedesktop.portal.Settings";

struct Key {
    const char *space;
    const char *name;
};
constexpr Key contrast{"org.freedesktop.appearance", "contrast"};
constexpr Key reducedMotion{"org.freedesktop.appearance", "reduced-motion"};
constexpr Key highContrast{"org.gnome.desktop.a11y.interface", "high-contrast"};
constexpr Key enableAnimations{"org.gnome.desktop.interface", "enable-animations"};
constexpr Key textScale{"org.gnome.desktop.interface", "text-scaling-factor"};
constexpr Key animationFactor{"org.kde.kdeglobals.KDE", "AnimationDurationFactor"};
constexpr Key keys[] = {contrast,         reducedMotion, highContrast,
                        enableAnimations, textScale,     animationFactor};

// Outside of it a desktop's value is a mistake.
constexpr double smallestText = 0.5;
constexpr double largestText = 4.0;

std::filesystem::path settingsFile() {
    return paths::join(environmentFolder("XDG_CONFIG_HOME", ".config"), "kdeglobals");
}

// Portals disagree on how often a value is wrapped.
QVariant bare(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = qvariant_cast<QDBusVariant>(value).variant();
    return value;
}

QVariant valueOf(const std::map<QString, QVariantMap> &values, const Key &key) {
    const auto space = values.find(QLatin1String(key.space));
    return space == values.end() ? QVariant() : bare(space->second.value(QLatin1String(key.name)));
}

bool isZero(const QVariant &value) {
    bool isNumber = false;
    return value.toDouble(&isNumber) == 0 && isNumber;
}

} // namespace

LinuxDesktopHints::LinuxDesktopHints(std::shared_ptr<SessionBus> bus) : m_bus(std::move(bus)) {}

LinuxDesktopHints::~LinuxDesktopHints() = default;

Hints LinuxDesktopHints::hints() const {
    return m_hints;
}

void LinuxDesktopHints::setChangedHandler(std::function<void()> handler) {
    m_changed = std::move(handler);
    start();
}

void LinuxDesktopHints::start() {
    if (m_portal)
        return;
    qDBusRegisterMetaType<Namespaces>();
    m_portal = std::make_unique<BusName>(*m_bus, QLatin1String(portalName));
    // A portal that is started by the first question is asked again by its own coming.
    connect(m_portal.get(), &BusName::ownerChanged, this, [this](const QString &owner) {
        if (!owner.isEmpty())
            askPortal();
    });
    connect(m_bus.get(), &SessionBus::connected, this, &LinuxDesktopHints::askPortal);
    m_bus->subscribe({this, QLatin1String(portalPath), QLatin1String(portalInterface),
                      QStringLiteral("SettingChanged"), QString(),
                      [this](const QDBusMessage &signal) {
                          const auto arguments = signal.arguments();
                          m_values[arguments.value(0).toString()][arguments.value(1).toString()] =
                              bare(arguments.value(2));
                          update();
                      }});
    m_bus->open();
    askPortal();
    m_files = std::make_unique<QFileSystemWatcher>();
    connect(m_files.get(), &QFileSystemWatcher::fileChanged, this, &LinuxDesktopHints::readFile);
    connect(m_files.get(), &QFileSystemWatcher::directoryChanged, this,
            &LinuxDesktopHints::readFile);
    m_files->addPath(QFile::decodeName(settingsFile().parent_path().c_str()));
    readFile();
}

void LinuxDesktopHints::askPortal() {
    QStringList spaces;
    for (const Key &key : keys)
        spaces << QLatin1String(key.space);
    spaces.removeDuplicates();
    auto question =
        QDBusMessage::createMethodCall(QLatin1String(portalName), QLatin1String(portalPath),
                                       QLatin1String(portalInterface), QStringLiteral("ReadAll"));
    question << spaces;
    m_bus->call(question, this, [this](const QDBusMessage &reply) {
        if (reply.type() != QDBusMessage::ReplyMessage)
            return;
        const auto answer = qdbus_cast<Namespaces>(reply.arguments().value(0));
        m_values = answer.toStdMap();
        update();
    });
}

void LinuxDesktopHints::readFile() {
    const auto file = settingsFile();
    // A file that has been replaced is no longer followed by itself.
    m_files->addPath(QFile::decodeName(file.c_str()));
    const auto text = readSmallFile(file);
    const std::string_view value =
        text ? settingOf(*text, "KDE", animationFactor.name) : std::string_view();
    double factor = 1;
    std::from_chars(value.data(), value.data() + value.size(), factor);
    m_fileStopsAnimation = factor == 0;
    update();
}

std::string_view LinuxDesktopHints::settingOf(std::string_view text, std::string_view group,
                                              std::string_view key) {
    bool inside = false;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
        if (line.starts_with('[')) {
            inside = line.size() == group.size() + 2 && line.substr(1, group.size()) == group;
            continue;
        }
        const auto sign = line.find('=');
        if (inside && sign != line.npos && trimmed(line.substr(0, sign)) == key)
            return trimmed(line.substr(sign + 1));
    }
    return {};
}

void LinuxDesktopHints::update() {
    Hints now;
    now.highContrast =
        valueOf(m_values, contrast).toInt() == 1 || valueOf(m_values, highContrast).toBool();
    const QVariant animations = valueOf(m_values, enableAnimations);
    now.reducedMotion = m_fileStopsAnimation || (animations.isValid() && !animations.toBool()) ||
                        valueOf(m_values, reducedMotion).toInt() == 1 ||
                        isZero(valueOf(m_values, animationFactor));
    const double scale = valueOf(m_values, textScale).toDouble();
    if (scale >= smallestText && scale <= largestText)
        now.textScale = scale;
    if (std::exchange(m_hints, now) != now && m_changed)
        m_changed();
}

} // namespace brightsweep
