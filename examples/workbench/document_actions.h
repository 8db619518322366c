// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QObject>
#include <QString>

/// The backend actions of one kind of document. They have no look of their own: the proxies show
/// their default one.
class DocumentActions : public QObject
{
public:
    DocumentActions(const QString& context, QObject* parent);

    /// Adds the backend of the proxy action with an identifier; disabled until there is a document.
    template <typename Reaction>
    QAction* add(const QString& id, Reaction reaction)
    {
        QAction* const action = create(id);
        connect(action, &QAction::triggered, this, reaction);
        return action;
    }

private:
    QAction* create(const QString& id);

    QString m_context;
};
