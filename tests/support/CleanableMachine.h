#pragma once

#include "support/TestTree.h"

#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace brightsweep::test {

/// What differs between two snapshots, one line per path: "- gone", "+ new", "~ changed". The
/// number of links does not count: it tells of a neighbour that has gone.
std::vector<std::string> changes(const std::map<std::string, std::string> &before,
                                 const std::map<std::string, std::string> &after);

/// A home and a system with items in each of the six clean categories and, beside them, what no
/// clean may touch: names that are almost a category's, what belongs to the package manager,
/// further links to items that go.
class CleanableMachine {
public:
    /// In the test's home and system.
    CleanableMachine();
    CleanableMachine(const std::filesystem::path &home, const std::filesystem::path &system);

    /// Makes the home, and everything below, that user's.
    void giveHome(unsigned user);
    /// Everything but this program's own records, by its full path.
    std::map<std::string, std::string> state() const;
    /// The lines of changes() after a clean of these categories.
    std::vector<std::string> changesOf(const std::set<unsigned> &categories) const;
    /// The same after a removal of single items, by their full paths.
    std::vector<std::string> changesOfItems(const std::set<std::string> &items) const;

    TestTree home;
    TestTree system;
    /// The items of each category.
    std::array<std::set<std::string>, 6> items;

private:
    void addItem(unsigned category, const std::filesystem::path &item);
    void makeSystem();
    void makeHome();
    void makeTrash();

    std::map<std::string, std::string> m_state;
};

} // namespace brightsweep::test
