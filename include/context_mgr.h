// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace Zentu {

class _context_mgr_private;

/**
 * Holds the names of the contexts that are active in the host.
 *
 * There are two independent lists: ordinary contexts, such as the kind of the current document, and
 * global ones, which always rank after them. The manager switches nothing itself; a host connects
 * contextChanged() once:
 *
 * @code
 * connect(ContextManager::instance(), &ContextManager::contextChanged, this, [] {
 *     ProxyActionManager::instance()->setCurrentContext(
 *         ContextManager::instance()->currentContexts());
 * });
 * @endcode
 *
 * For the GUI thread only. Any text is a valid name, the empty one too; names are compared exactly.
 */
class ZENTU_EXPORT ContextManager : public QObject
{
    Q_OBJECT

public:
    /// The manager, created by the first call. Never deleted by the library; if the host deletes
    /// it, the next call creates an empty one.
    static ContextManager* instance();

    /// Creates a manager without contexts that instance() does not know: for a window of several,
    /// which hands it on. A host with one window uses instance().
    ContextManager();

    /// Makes instance() forget its manager, whichever object is destroyed.
    ~ContextManager() override;

    /// Puts @p context at the front of the ordinary contexts, moving it there if it is in the list.
    /// Always emits contextChanged().
    void addContext(const QString& context);

    /// Removes @p context from the ordinary contexts and emits contextChanged(). If it is not among
    /// them, warns "context not found" and emits nothing.
    void removeContext(const QString& context);

    /// Puts @p context at the front of the global contexts, moving it there if it is in the list.
    /// Always emits contextChanged().
    void addGlobalContext(const QString& context);

    /// Removes @p context from the global contexts and emits contextChanged(). If it is not among
    /// them, warns "context not found" and emits nothing.
    void removeGlobalContext(const QString& context);

    /// The ordinary contexts followed by the global ones, each most recently added first: the order
    /// of priority. A name that is in both lists appears twice. Empty by default.
    QStringList currentContexts() const;

Q_SIGNALS:
    /// A context was added or removed; emitted before the call that did it returns. A slot may
    /// change the contexts again, and delete the manager.
    void contextChanged();

private:
    static ContextManager* s_instance;

    _context_mgr_private* d;
};

} // namespace Zentu
