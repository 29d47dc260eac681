#pragma once

#include "linux/CategoryTable.h"

#include <QString>
#include <QStringList>

#include <cstdint>

namespace brightsweep {

/// How much of a category is selected, as its setting holds it.
enum class CategorySelection { None = 0, All = 1, Part = 2 };

inline constexpr char KVO_CONTEXT_SCAN_FINISH[] = "KVO_CONTEXT_SCAN_FINISH";
inline constexpr char KVO_CONTEXT_CLEAN_FINISH[] = "KVO_CONTEXT_CLEAN_FINISH";

inline constexpr unsigned trashCategory = unsigned(CleanPlace::HomeTrash);
inline constexpr unsigned downloadsCategory = unsigned(CleanPlace::Downloads);

/// Row of the left list that shows a category; row 0 is the overview.
inline constexpr int rowOfCategory(unsigned category) {
    return int(category) + 1;
}

/// The stored selection of a category: 0 none, 1 all, 2 part. While the settings cannot be read
/// whole, a default is no choice of the user's: what is not known reads 0.
std::int64_t storedSelection(unsigned category);
/// The stored selection of all six in words, "0", "1" or "2", in their order.
QStringList getDefaultsValue();

/// Looks at the settings anew. Why what they say of the categories is not to be gone by, in a
/// sentence for the user; empty where they can be read whole.
QString selectionProblem();

} // namespace brightsweep
