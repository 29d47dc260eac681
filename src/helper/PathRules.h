#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Which paths the helper touches at all. Texts only; nothing here opens a file but
/// ProtectedPlaces, which looks where its places really are.
namespace brightsweep::helper {

struct RemovePath;

/// Empty, or why the way is no way to one item: not absolute, with a NUL, with an empty, "." or
/// ".." component, or a direct child of "/".
std::string_view refusalOfWords(const RemovePath &removal);

/// The number of components of an absolute path.
std::size_t componentCount(std::string_view path);

/// The places that must outlive every removal: the folders that the clean categories name, the
/// directories that a system cannot do without, and those that a user's home consists of. What lies
/// in them may go; they and whatever holds them may not.
class ProtectedPlaces {
public:
    /// `systemRoot`, when not empty, stands before each system-wide place besides its own place.
    ProtectedPlaces(std::string_view systemRoot, const std::vector<std::string> &homes);

    /// True for a place, for what holds one, and for a direct child of those that keep theirs.
    bool holds(std::string_view path) const;
    /// True when a place is this very directory, by whatever path it was reached.
    bool isOne(std::uint64_t device, std::uint64_t inode) const;
    /// The folders of downloaded packages that apt guards by a lock.
    const std::vector<std::string> &aptArchives() const { return m_aptArchives; }

private:
    void add(std::string place);

    std::vector<std::string> m_places;
    std::vector<std::string> m_withChildren; ///< none of whose direct children may go either
    std::vector<std::string> m_aptArchives;
};

} // namespace brightsweep::helper
