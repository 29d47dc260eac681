#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace brightsweep {

/// A folder whose direct children are compared with an application's names.
enum class LeftoverPlace { Config, Cache, Data, State, Home, Shared };

/// What one application is called, wherever that is written.
struct ApplicationNames {
    std::string package;                 ///< of the package, the snap or the folder
    std::vector<std::string> programs;   ///< names or paths of what it runs
    std::vector<std::string> desktopIds; ///< of all its entries, without ".desktop"
};

/// The names by which what an application left is known: exact ones, compared without regard to the
/// case of ASCII letters. Pure: it looks at no disk. Constant once filled.
class LeftoverNames {
public:
    /// What is searched for: names that are long enough, and are nobody else's and no common word.
    static LeftoverNames of(const ApplicationNames &application);
    /// What others may call their own: every one of these names, common or not, paths of programs
    /// and ids of entries among them.
    static LeftoverNames claimedBy(std::span<const std::string> names);

    /// True for an entry of such a folder that has one of the names: in all of them the name
    /// itself, or a reverse-DNS id with more behind a point; among settings also "NAMErc",
    /// "NAME.conf" and "NAME.ini"; in the home a name behind a point and nothing else.
    bool matches(LeftoverPlace place, std::string_view entry) const;
    bool isEmpty() const { return m_ids.empty() && m_names.empty(); }

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };
    using Set = std::unordered_set<std::string, Hash, std::equal_to<>>;

    Set m_ids; ///< with two points or more
    Set m_names;
};

/// The rest of the rules about leftovers.
namespace LeftoverRules {

/// True for an id such as "org.example.Editor".
bool isReverseDns(std::string_view id);
/// True for a name that stands for more than one program's files, or for none's.
bool isCommonName(std::string_view name);

/// A bundle's leftovers are the entries that begin with its id, letter for letter.
bool isListedForBundle(std::string_view entry, std::string_view id);
/// Of these, what can belong to no other bundle: the id itself and, where that has two points or
/// more, what follows it behind a point.
bool isTickedForBundle(std::string_view entry, std::string_view id);

/// Settings of more bytes than that are data.
inline constexpr std::uint64_t mostSettingsBytes = std::uint64_t(1) << 20;
/// True for the name of a file or folder that a database, a profile or something that people make
/// or collect goes by (documents, music, video, pictures, archives): a folder of settings that
/// holds one is data.
bool isDataName(std::string_view name);

/// When an installation that began at `begun` had ended: the last of the times of arrival that
/// follow one another with no more than `pause` between.
std::int64_t endOfInstallation(std::int64_t begun, std::vector<std::int64_t> arrivals,
                               std::int64_t pause);

} // namespace LeftoverRules

} // namespace brightsweep
