#include "results/SimpleNodeData.h"

#include <utility>

namespace brightsweep {

namespace {

template <typename Value>
int compare(const Value &a, const Value &b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

void setIfChanged(std::string &field, std::string value) {
    if (field != value)
        field = std::move(value);
}

} // namespace

std::shared_ptr<SimpleNodeData> SimpleNodeData::leafDataWithName(std::string name) {
    return std::make_shared<SimpleNodeData>(std::move(name), true);
}

std::shared_ptr<SimpleNodeData> SimpleNodeData::groupDataWithName(std::string name) {
    return std::make_shared<SimpleNodeData>(std::move(name), false);
}

SimpleNodeData::SimpleNodeData(std::string name, bool isLeaf)
    : m_name(std::move(name)), m_isLeaf(isLeaf), m_isExpandable(!isLeaf) {}

void SimpleNodeData::setName(std::string name) {
    if (std::exchange(m_iconIsName, false))
        m_iconRep = m_name;
    setIfChanged(m_name, std::move(name));
}

void SimpleNodeData::setIconRep(std::string icon) {
    m_iconIsName = false;
    setIfChanged(m_iconRep, std::move(icon));
}

void SimpleNodeData::setShowSelectNumStr(std::string text) {
    setIfChanged(m_showSelectNumStr, std::move(text));
}

int SimpleNodeData::compareName(const TreeNodeData &other) const {
    const auto *data = dynamic_cast<const SimpleNodeData *>(&other);
    return data ? compare(m_name, data->m_name) : 0;
}

int SimpleNodeData::compareSize(const TreeNodeData &other) const {
    const auto *data = dynamic_cast<const SimpleNodeData *>(&other);
    return data ? compare(m_fileSize, data->m_fileSize) : 0;
}

int SimpleNodeData::compareDate(const TreeNodeData &other) const {
    const auto *data = dynamic_cast<const SimpleNodeData *>(&other);
    return data ? compare(m_modificationDate, data->m_modificationDate) : 0;
}

} // namespace brightsweep
