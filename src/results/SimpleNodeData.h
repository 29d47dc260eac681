#pragma once

#include "foundation/FileTime.h"
#include "results/TreeNodeData.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace brightsweep {

/// The payload in use: a leaf stands for a file, with its full path as name; a group for files that
/// belong together. An icon is the path, file name or extension that it is looked up by.
class SimpleNodeData : public TreeNodeData {
public:
    static std::shared_ptr<SimpleNodeData> leafDataWithName(std::string name);
    static std::shared_ptr<SimpleNodeData> groupDataWithName(std::string name);
    SimpleNodeData(std::string name, bool isLeaf);

    const std::string &name() const { return m_name; }
    void setName(std::string name);
    const std::string &iconRep() const { return m_iconIsName ? m_name : m_iconRep; }
    void setIconRep(std::string icon);
    /// The icon goes by the present name, which is not kept twice.
    void setIconRepToName() { m_iconIsName = true; }
    bool isLeaf() const { return m_isLeaf; }
    void setIsLeaf(bool value) { m_isLeaf = value; }
    bool isGroup() const { return !m_isLeaf; }
    bool isExpandable() const { return m_isExpandable; }
    void setIsExpandable(bool value) { m_isExpandable = value; }
    /// Of a group the sum of its members.
    std::uint64_t fileSize() const { return m_fileSize; }
    void setFileSize(std::uint64_t bytes) { m_fileSize = bytes; }
    const std::string &extendName() const { return m_extendName; }
    void setExtendName(std::string extension) { m_extendName = std::move(extension); }
    /// True for a group that has been put into its file class.
    bool Mark() const { return m_mark; }
    void setMark(bool value) { m_mark = value; }
    /// 0 none, 1 all, 2 some; a leaf has only 0 and 1.
    std::int32_t selectNum() const { return m_selectNum; }
    void setSelectNum(std::int32_t value) { m_selectNum = value; }
    /// 1 to 6, 0 until classified.
    std::int32_t fileType() const { return m_fileType; }
    void setFileType(std::int32_t value) { m_fileType = value; }
    /// None for a group.
    std::optional<FileTime> ModificationDate() const { return m_modificationDate; }
    void setModificationDate(std::optional<FileTime> date) { m_modificationDate = date; }
    /// Of a group: selected and total, such as "2/3".
    const std::string &showSelectNumStr() const { return m_showSelectNumStr; }
    void setShowSelectNumStr(std::string text);

    int compareName(const TreeNodeData &other) const override;
    int compareSize(const TreeNodeData &other) const override;
    /// What has no date comes before what has one.
    int compareDate(const TreeNodeData &other) const override;
    std::string description() const override { return m_name; }

private:
    std::string m_name;
    std::string m_iconRep;
    std::string m_extendName;
    std::string m_showSelectNumStr;
    std::uint64_t m_fileSize = 0;
    std::optional<FileTime> m_modificationDate;
    std::int32_t m_selectNum = 0;
    std::int32_t m_fileType = 0;
    bool m_isLeaf = true;
    bool m_isExpandable = false;
    bool m_mark = false;
    bool m_iconIsName = false;
};

} // namespace brightsweep
