// SPDX-License-Identifier: MIT
#include "proxy_act.h"

#include "recorder.h"

#include <QPointer>
#include <QTest>

#include <functional>

using namespace Support;
using Zentu::ProxyAction;
using Zentu::ProxyActionManager;

namespace {

const QString A = QStringLiteral("A");

/// A callback, and the object that is deleted in it.
struct Case
{
    const char* name;
    std::function<void()> run;
};

// Calls a function at the signal, once.
template <typename Sender, typename Signal>
void once(Sender* sender, Signal signal, const std::function<void()>& call)
{
    auto* const context = new QObject(sender);
    QObject::connect(sender, signal, context, [=] {
        const std::function<void()> held = call;
        delete context;
        held();
    });
}

void proxyDeletedInItsSignals(const std::function<void(ProxyAction*, QAction*)>& connect)
{
    QAction backend(QStringLiteral("backend"));
    backend.setCheckable(true);
    backend.setChecked(true);
    const QPointer<ProxyAction> proxy = new ProxyAction;
    proxy->addBackendAction(&backend, A);
    connect(proxy, &backend);
    proxy->setCurrentContext({A});
    QVERIFY(!proxy);
    backend.setText(QStringLiteral("alone"));
}

const Case Cases[] = {
    {"proxy in its changed()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction*) {
                once(proxy, &QAction::changed, [=] { delete proxy; });
            });
        }},
    {"proxy in its toggled()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction*) {
                once(proxy, &QAction::toggled, [=] { delete proxy; });
            });
        }},
    {"proxy and backend's successor in the proxy's changed()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction* backend) {
                once(proxy, &QAction::changed, [=] {
                    proxy->removeBackendAction(backend);
                    delete proxy;
                });
            });
        }},
    {"proxy in its backend's changed()",
        [] {
            QAction backend;
            const QPointer<ProxyAction> proxy = new ProxyAction;
            proxy->addBackendAction(&backend, A);
            proxy->setCurrentContext({A});
            once(proxy.data(), &QAction::changed, [=] { delete proxy; });
            backend.setText(QStringLiteral("changed"));
            QVERIFY(!proxy);
        }},
    {"proxy in the changed() of its default look",
        [] {
            const QPointer<ProxyAction> proxy = new ProxyAction;
            once(proxy.data(), &QAction::changed, [=] { proxy->deleteLater(); });
            proxy->defaultProp()->setText(QStringLiteral("changed"));
            QTRY_VERIFY(!proxy);
        }},
    {"manager while it hands contexts on",
        [] {
            QAction backend(QStringLiteral("backend"));
            ProxyAction first;
            ProxyAction second;
            first.addBackendAction(&backend, A);
            const QPointer<ProxyActionManager> manager = new ProxyActionManager;
            manager->registerProxyAction(&first, QStringLiteral("1"));
            manager->registerProxyAction(&second, QStringLiteral("2"));
            once(&first, &QAction::changed, [=] { delete manager; });
            manager->setCurrentContext({A});
            QVERIFY(!manager);
            QCOMPARE(first.currentActiveBackendAction(), &backend);
            QVERIFY(second.currentContext().isEmpty());
        }},
};

} // namespace

/// What a callback deletes is not looked at afterwards, and the steps that remain are left out.
class DeletedInCallbackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingDeadIsRead_data();
    void nothingDeadIsRead();
};

void DeletedInCallbackTest::nothingDeadIsRead_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const Case& one : Cases)
        QTest::newRow(one.name) << index++;
}

void DeletedInCallbackTest::nothingDeadIsRead()
{
    QFETCH(int, index);
    const Recorder recorder; // The lines are those of the other tests.
    Cases[index].run();
}

QTEST_MAIN(DeletedInCallbackTest)
#include "tst_deleted_in_callback.moc"
