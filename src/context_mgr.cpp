// SPDX-License-Identifier: MIT
#include "context_mgr.h"

#include "trace_p.h"

#include <QDebug>

namespace Zentu {

/// The two lists of contexts, most recently added first.
class _context_mgr_private
{
public:
    static void moveToFront(QStringList& list, const QString& context)
    {
        list.prepend(context);
        list.removeDuplicates();
    }

    QStringList contexts;
    QStringList globalContexts;
};

ContextManager* ContextManager::s_instance = nullptr;

ContextManager* ContextManager::instance()
{
    if (!s_instance)
        s_instance = new ContextManager;
    return s_instance;
}

ContextManager::ContextManager()
    : d(new _context_mgr_private)
{
}

ContextManager::~ContextManager()
{
    delete d;
    s_instance = nullptr;
}

void ContextManager::addContext(const QString& context)
{
    Trace() << this << "push context:" << context;
    _context_mgr_private::moveToFront(d->contexts, context);
    Q_EMIT contextChanged();
}

void ContextManager::removeContext(const QString& context)
{
    Trace() << this << "remove context" << context;
    if (d->contexts.removeAll(context) > 0)
        Q_EMIT contextChanged();
    else
        qWarning() << this << "context not found" << context;
}

void ContextManager::addGlobalContext(const QString& context)
{
    Trace() << this << "add global context" << context;
    _context_mgr_private::moveToFront(d->globalContexts, context);
    Q_EMIT contextChanged();
}

void ContextManager::removeGlobalContext(const QString& context)
{
    Trace() << this << "remove global context" << context;
    if (d->globalContexts.removeAll(context) > 0)
        Q_EMIT contextChanged();
    else
        qWarning() << this << "context not found" << context;
}

QStringList ContextManager::currentContexts() const
{
    return d->contexts + d->globalContexts;
}

} // namespace Zentu
