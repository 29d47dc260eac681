#pragma once

#include "duplicates/BundleComparison.h"
#include "duplicates/FileComparison.h"
#include "duplicates/SearchedFile.h"
#include "platform/FileIdentity.h"
#include "removal/ItemRemoval.h"
#include "removal/MoveToTrash.h"
#include "results/TreeNode.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace brightsweep {

/// Removes duplicates, moves them to the trash, or makes them share their blocks with the copy that
/// stays, and looks at both again right before.
///
/// A member of a group goes only while it is the file that was searched, and only if another that
/// stays is still there, unchanged, a file of its own (or another name of it) and equal byte for
/// byte, with both held open and no program writing to either. The search itself goes by a
/// checksum, which proves nothing. Checks come first; then both are looked at once more and the act
/// follows with nothing in between.
///
/// For one thread of a run. Failures are told, and logged by those who remove.
class DuplicateRemoval {
public:
    enum class Act { Remove, Trash, Share };

    struct Member {
        std::filesystem::path path; ///< as the search gave it
        SearchedFile searched;
        bool goes = false; ///< is to go, or has gone: then it is no copy that stays
    };

    struct Options {
        Act act = Act::Remove;
        /// False: every check is made and nothing is changed.
        bool applies = true;
        /// When set, ends an act within a second. Outlives the object.
        const std::atomic<bool> *stop = nullptr;
    };

    struct Outcome {
        bool done = false;
        std::error_code error; ///< why it stays
        std::string words;     ///< of the privileged way, where it had any
        bool neededRights = false;
        /// What the file system gives back, at most: snapshots may hold the blocks.
        std::uint64_t bytesFreed = 0;
    };

    DuplicateRemoval(SearchRoot root, const Options &options);

    /// Acts on one member. `takesWholeGroup`: the user has said that the last one may go, too;
    /// never for sharing.
    Outcome act(const std::vector<Member> &group, std::size_t index, bool takesWholeGroup = false);
    /// False where the volume of that member has no trash. True where that cannot be told.
    bool hasTrash(const Member &member);

private:
    Result<RemovalTarget> targetOf(const std::filesystem::path &path) const;
    std::int64_t expectedChange(const SearchedFile &searched) const;
    bool isAsSearched(const FileAttributes &attributes, const SearchedFile &searched) const;
    std::error_code checkItem(const OpenItem &item, const Member &member);

    Outcome actOnFile(const RemovalTarget &target, const OpenItem &item,
                      const std::vector<Member> &group, const Member &member, bool takesWholeGroup);
    Outcome actOnBundle(const RemovalTarget &target, const OpenItem &item,
                        const std::vector<Member> &group, const Member &member,
                        bool takesWholeGroup);
    Outcome shareBundle();
    Result<HeldCopy> holdMember(const OpenItem &item, const Member &member);
    Result<HeldCopy> holdOther(const OpenItem &item, const HeldCopy &file, const Member &other);
    std::error_code compare(const HeldCopy &file, const HeldCopy &other);
    std::error_code lookAgain(const OpenItem &item, const Member &member, const HeldCopy &file,
                              const HeldCopy *other);
    Outcome take(const RemovalTarget &target, const OpenItem &item);
    Outcome share(const HeldCopy &file, const HeldCopy &other);
    std::uint64_t freedWithout(const HeldCopy &file);
    void noteChange(const FileDescriptor &file);

    FileOperations &m_files;
    SearchRoot m_root;
    Options m_options;
    ItemRemoval m_removal;
    MoveToTrash m_trash;
    FileComparison m_comparison;
    BundleComparison m_bundles;
    std::map<FileIdentity, std::int64_t> m_changes;       ///< by acts of our own
    std::map<FileIdentity, std::uint64_t> m_namesWouldGo; ///< where nothing is changed
};

/// The members of a group in a search's tree; none goes yet.
std::vector<DuplicateRemoval::Member> membersOf(const TreeNode &group);

/// Why the files of that folder's file system cannot share blocks; empty where they can. Asks about
/// the first member of the groups that can be opened.
std::error_code sharingRefusal(const std::vector<DuplicateRemoval::Member> &group);

} // namespace brightsweep
