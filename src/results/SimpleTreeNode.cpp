#include "results/SimpleTreeNode.h"

namespace brightsweep {

std::shared_ptr<SimpleTreeNode> SimpleTreeNode::treeFromDictionary(const QVariantMap &dictionary) {
    const QString group = dictionary.value(QStringLiteral("Group")).toString();
    auto node = nodeWithData(SimpleNodeData::groupDataWithName(group.toStdString()));
    for (const QVariant &entry : dictionary.value(QStringLiteral("Entries")).toList()) {
        const auto child =
            entry.typeId() == QMetaType::QVariantMap
                ? treeFromDictionary(entry.toMap())
                : nodeWithData(SimpleNodeData::leafDataWithName(entry.toString().toStdString()));
        node->insertChild(child, node->numberOfChildren());
    }
    return node;
}

} // namespace brightsweep
