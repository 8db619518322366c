// SPDX-License-Identifier: MIT
#include "document_actions.h"

#include "proxy_act.h"

DocumentActions::DocumentActions(const QString& context, QObject* parent)
    : QObject(parent)
    , m_context(context)
{
}

QAction* DocumentActions::create(const QString& id)
{
    auto* action = new QAction(this);
    action->setEnabled(false);
    Zentu::ProxyActionManager::instance()->getProxyAction(id)->addBackendAction(action, m_context);
    return action;
}
