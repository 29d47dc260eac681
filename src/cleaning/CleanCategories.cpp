#include "cleaning/CleanCategories.h"

#include "core/Texts.h"
#include "foundation/Paths.h"
#include "foundation/UserDefaults.h"

namespace brightsweep {

std::int64_t storedSelection(unsigned category) {
    const UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const QLatin1String key(cleanCategories[category].key);
    return defaults.readProblem().empty() || defaults.hasUserValue(QString(key))
               ? defaults.integerForKey(key)
               : 0;
}

QStringList getDefaultsValue() {
    QStringList selection;
    for (unsigned category = 0; category < categoryCount; ++category)
        selection += QString::number(storedSelection(category));
    return selection;
}

QString selectionProblem() {
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.synchronize();
    const std::string problem = defaults.readProblem();
    if (problem.empty())
        return {};
    return localizedText("SETTINGS_UNREADABLE")
        .arg(nameInSentence(paths::display(defaults.file())), QString::fromStdString(problem));
}

} // namespace brightsweep
