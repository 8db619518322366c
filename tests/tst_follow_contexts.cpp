// SPDX-License-Identifier: MIT
#include "zentu_host.h"

#include "host_window.h"
#include "recorder.h"

#include <QMainWindow>
#include <QTest>

#include <memory>

using namespace Support;
using namespace Zentu;

namespace {

const QString Copy = QStringLiteral("edit.copy");
const QString Text = QStringLiteral("text");

/// A document with an action of its own.
class Document : public IMdiSubWindow
{
public:
    explicit Document(const Managers& managers)
        : actions(QString(), managers)
    {
        setWidget(new QWidget);
        actions.add(Copy, [] {});
    }

    void currentChanged(bool current) override { actions.setCurrent(current); }

    DocumentActions actions;
};

/// A window whose proxies are its children, and go before its documents or after them.
class Window : public QMainWindow
{
    Q_OBJECT

public:
    explicit Window(const Managers& managers = Managers(), bool proxiesFirst = true)
        : m_managers(managers)
    {
        if (proxiesFirst)
            createProxy();
        area = new MdiArea(this);
        setCentralWidget(area);
        if (!proxiesFirst)
            createProxy();
        followContexts(this, managers);
    }

    Document* open()
    {
        auto* const document = new Document(m_managers);
        area->addWindow(document);
        return document;
    }

    ProxyAction* copy = nullptr;
    MdiArea* area = nullptr;

private:
    void createProxy()
    {
        copy = new ProxyAction(this);
        m_managers.proxies->registerProxyAction(copy, Copy);
    }

    Managers m_managers;
};

/// Takes its context back when its window takes it along.
class PartOfWindow : public QObject
{
public:
    PartOfWindow(QObject* window, ContextManager* contexts)
        : QObject(window)
        , m_contexts(contexts)
    {
        m_contexts->addContext(Text);
    }

    ~PartOfWindow() override { m_contexts->removeContext(Text); }

private:
    ContextManager* m_contexts;
};

/// One that has managers of its own.
class WindowOfManagers
{
    ContextManager m_contexts;
    ProxyActionManager m_proxies;

public:
    explicit WindowOfManagers(bool proxiesFirst)
        : window({&m_contexts, &m_proxies}, proxiesFirst)
    {
    }

    Window window;
};

} // namespace

class FollowContextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_recorder = std::make_unique<Recorder>(); }
    void cleanup();

    void proxiesFollowNowAndLater();
    void connectionEndsWithTheObject();
    void connectionEndsWithEitherManager();
    void connectionIsSilentWhenTheWindowIsNoneAnyMore();
    void windowIsMadeAndDeletedAgain_data();
    void windowIsMadeAndDeletedAgain();
    void twoWindowsAtOnce_data();
    void twoWindowsAtOnce();

private:
    std::unique_ptr<Recorder> m_recorder;
};

void FollowContextsTest::cleanup()
{
    QCOMPARE(surprises(*m_recorder), QStringList());
    m_recorder.reset();
}

void FollowContextsTest::proxiesFollowNowAndLater()
{
    ContextManager contexts;
    ProxyActionManager proxies;
    ProxyAction copy;
    proxies.registerProxyAction(&copy, Copy);
    QAction backend(nullptr);
    copy.addBackendAction(&backend, Text);
    contexts.addContext(Text);

    QObject until;
    followContexts(&until, {&contexts, &proxies});
    QVERIFY(copy.isEnabled());
    contexts.removeContext(Text);
    QVERIFY(!copy.isEnabled());
}

void FollowContextsTest::connectionEndsWithTheObject()
{
    HostWindow window({Copy});
    window.until.reset();
    window.contexts->addContext(Text);
    QVERIFY(window[Copy]->currentContext().isEmpty());
}

void FollowContextsTest::connectionEndsWithEitherManager()
{
    HostWindow window({Copy});
    window.actions.reset();
    window.contexts->addContext(Text);
    QVERIFY(window.proxies.front()->currentContext().isEmpty());

    HostWindow other({Copy});
    other.contexts.reset();
    other.until.reset();
}

void FollowContextsTest::connectionIsSilentWhenTheWindowIsNoneAnyMore()
{
    ContextManager contexts;
    ProxyActionManager proxies;
    auto window = std::make_unique<Window>(Managers{&contexts, &proxies});
    new PartOfWindow(window.get(), &contexts);
    QCOMPARE(window->copy->currentContext(), QStringList(Text));
    m_recorder->clear();
    // The proxy goes before the part.
    window.reset();
    QVERIFY(contexts.currentContexts().isEmpty());
    const QStringList lines = m_recorder->take();
    QVERIFY(lines.filter(QLatin1String("remove context")).size() == 1);
    QCOMPARE(lines.filter(QLatin1String("set context")), QStringList());
}

static void proxiesFirstOrLast()
{
    QTest::addColumn<bool>("proxiesFirst");
    QTest::newRow("proxies go first") << true;
    QTest::newRow("documents go first") << false;
}

void FollowContextsTest::windowIsMadeAndDeletedAgain_data()
{
    proxiesFirstOrLast();
}

void FollowContextsTest::windowIsMadeAndDeletedAgain()
{
    QFETCH(bool, proxiesFirst);
    for (int time = 0; time < 2; ++time) {
        auto window = std::make_unique<Window>(Managers(), proxiesFirst);
        window->show();
        window->open();
        QTRY_VERIFY(window->copy->isEnabled());
        auto* const last = window->open();
        QTRY_COMPARE(window->copy->currentActiveBackendAction(), last->actions.action(Copy));
        window.reset();
        // The proxies of the dead window are in it.
        delete ProxyActionManager::instance();
        delete ContextManager::instance();
    }
    for (int time = 0; time < 2; ++time) {
        WindowOfManagers host(proxiesFirst);
        host.window.show();
        host.window.open();
        QTRY_VERIFY(host.window.copy->isEnabled());
    }
}

void FollowContextsTest::twoWindowsAtOnce_data()
{
    proxiesFirstOrLast();
}

void FollowContextsTest::twoWindowsAtOnce()
{
    QFETCH(bool, proxiesFirst);
    auto one = std::make_unique<WindowOfManagers>(proxiesFirst);
    auto other = std::make_unique<WindowOfManagers>(proxiesFirst);
    for (Window* window : {&one->window, &other->window}) {
        window->show();
        window->open();
        QTRY_VERIFY(window->copy->isEnabled());
    }
    one->window.area->currentSubWindow()->close();
    QTRY_VERIFY(!one->window.copy->isEnabled());
    QVERIFY(other->window.copy->isEnabled());
    one.reset();
    other->window.open();
    QVERIFY(other->window.copy->isEnabled());
}

QTEST_MAIN(FollowContextsTest)
#include "tst_follow_contexts.moc"
