#pragma once

#include <array>
#include <cstddef>

namespace brightsweep {

/// A row of a table that gives a value its words, or the key of them.
template <typename Value>
struct WordRow {
    Value value;
    const char *words;
};
// Older versions of clang do not deduce it for an aggregate.
template <typename Value>
WordRow(Value, const char *) -> WordRow<Value>;

/// The words in the row of that value; `other` where it has none.
template <typename Value, std::size_t rowCount>
constexpr const char *wordsIn(const std::array<WordRow<Value>, rowCount> &rows, Value value,
                              const char *other) {
    for (const WordRow<Value> &row : rows) {
        if (row.value == value)
            return row.words;
    }
    return other;
}

} // namespace brightsweep
