#include "volumes/MenuItem.h"

#include "foundation/UserDefaults.h"
#include "volumes/FillLevel.h"

#include <algorithm>
#include <limits>

namespace brightsweep {

namespace {

int intValue(const QString &text) {
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<std::int64_t>(integerFromText(text), Limits::min(), Limits::max()));
}

} // namespace

bool MenuItem::storageWarns(int storage) {
    // Less 2, as an unsigned number, the storages 2, 3 and 4 are below 3.
    return unsigned(storage) - 2u >= 3u;
}

QString MenuItem::stateText() const {
    return isEjecting       ? QStringLiteral(QT_TRID_NOOP("Ejecting…"))
           : note.isEmpty() ? u64FreeSpace
                            : note;
}

QString MenuItem::ejectImage() const {
    return clicked ? QStringLiteral("highthover.png") : QStringLiteral("hover.png");
}

QString MenuItem::getPrograssImage() const {
    const int used = FillLevel::usedPercent(nTotalSize, nFreeSize);
    if (used < 0)
        return {};
    return QString::number(used) + (warns() ? QLatin1String("-1.png") : QLatin1String(".png"));
}

bool MenuItem::getWarningValue() const {
    return FillLevel::isLow(nTotalSize, nFreeSize, intValue(errorValue));
}

bool MenuItem::warns() const {
    return storageWarns(myStorage) && getWarningValue();
}

bool MenuItem::looksLike(const MenuItem &other) const {
    return volumeSize == other.volumeSize && stateText() == other.stateText() &&
           u64TotalSpace == other.u64TotalSpace && prograssImage == other.prograssImage &&
           warns() == other.warns() && toolTip == other.toolTip && icon == other.icon &&
           clicked == other.clicked && isEjecting == other.isEjecting &&
           bCanEject == other.bCanEject && volRootDir == other.volRootDir;
}

} // namespace brightsweep
