// SPDX-License-Identifier: MIT
//
// Builds a tree of categories from made-up paths and compares it with a model.

#include "fuzz_input.h"

#include "option_dlg.h"

#include <QTreeWidgetItem>

#include <memory>
#include <vector>

namespace {

/// A category with its children in the order in which they were met.
struct Node
{
    QString name;
    std::vector<std::unique_ptr<Node>> children;

    Node* child(const QString& wanted)
    {
        for (const auto& node : children) {
            if (node->name == wanted)
                return node.get();
        }
        children.push_back(std::make_unique<Node>());
        children.back()->name = wanted;
        return children.back().get();
    }
};

void compare(const Node& node, QTreeWidgetItem* item)
{
    Fuzz::expect(item->childCount() == static_cast<int>(node.children.size()), "child count");
    for (int i = 0; i < item->childCount(); ++i) {
        const Node& child = *node.children[static_cast<std::size_t>(i)];
        Fuzz::expect(item->child(i)->text(0) == child.name, "name");
        Fuzz::expect(item->child(i)->type() == QTreeWidgetItem::Type, "item type");
        Fuzz::expect(Zentu::findChildItemByText(item, child.name) == item->child(i), "look-up");
        compare(child, item->child(i));
    }
    Fuzz::expect(!Zentu::findChildItemByText(item, QStringLiteral("\n none \n")), "unknown name");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Fuzz::Input input(data, size);
    QTreeWidgetItem root;
    Node model;
    while (!input.atEnd()) {
        const QStringList path = input.texts(6);
        Node* node = &model;
        for (const QString& name : path)
            node = node->child(name);

        QTreeWidgetItem* const item = Zentu::createItemForCategory(&root, path);
        Fuzz::expect(path.isEmpty() ? item == &root : item->text(0) == path.last(), "result");
        Fuzz::expect(Zentu::createItemForCategory(&root, path) == item, "repeated path");
    }
    compare(model, &root);
    return 0;
}
