// SPDX-License-Identifier: MIT
//
// Runs made-up operations on a proxy and compares what it shows with a model after each.

#include "proxy_act.h"

#include "proxy_model.h"
#include "recorder.h"
#include "story.h"

#include <QRandomGenerator>
#include <QScopedValueRollback>
#include <QTest>

#include <memory>
#include <vector>

using namespace Support;
using Zentu::ProxyAction;

namespace {

const QStringList Contexts = {
    QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d"), QString()};

/// A proxy, its model and a handful of actions.
class World
{
public:
    explicit World(quint32 seed)
        : m_random(seed)
        , m_model(m_proxy.defaultProp())
    {
        for (int i = 0; i < 5; ++i)
            m_actions.push_back(std::make_unique<QAction>());
    }

    // Whoever is told by the proxy goes on at once: switches, removes and deletes what is active.
    void letListenersCallBack()
    {
        m_listenersCallBack = true;
        const auto callBack = [this] {
            if (m_depth == 0 || m_depth > 3 || m_random.bounded(6) != 0)
                return;
            const QScopedValueRollback<int> deeper(m_depth, m_depth + 1);
            change(m_random.bounded(5));
        };
        QObject::connect(&m_proxy, &QAction::changed, &m_proxy, callBack);
        QObject::connect(&m_proxy, &QAction::toggled, &m_proxy, callBack);
    }

    ~World()
    {
        // Registrations that are not watched must go before their actions do.
        for (const QString& context : Contexts) {
            if (m_model.backends.contains(context))
                m_proxy.removeBackendContext(context);
        }
    }

    void step()
    {
        const int what = m_random.bounded(12);
        if (what == 0) {
            removeByAction();
        } else if (what == 1) {
            trigger();
        } else {
            const QScopedValueRollback<int> deeper(m_depth, m_depth + 1);
            if (what < 5)
                edit(anyAction());
            else
                change(what < 7 ? 0 : what - 7);
        }
        compare();
    }

private:
    // What can happen while the proxy copies properties. The backend is not edited there: it is not
    // connected yet.
    void change(int what)
    {
        switch (what) {
        case 0:
            registerAction();
            break;
        case 1:
            removeByContext();
            break;
        case 2:
            setContexts();
            break;
        case 3:
            edit(m_proxy.defaultProp());
            break;
        default:
            replaceAction();
            break;
        }
    }

    QString anyContext() { return Contexts.at(m_random.bounded(Contexts.size())); }
    QAction* anyAction() { return m_actions[anyIndex()].get(); }
    std::size_t anyIndex()
    {
        return static_cast<std::size_t>(m_random.bounded(static_cast<int>(m_actions.size())));
    }

    void registerAction()
    {
        const QString context = anyContext();
        QAction* const action = anyAction();
        if (!m_model.backends.contains(context)) {
            m_model.backends.insert(context, action);
            m_watches[action].append(context);
        }
        m_proxy.addBackendAction(action, context);
    }

    // Which of several registrations goes is the hash's choice; the proxy tells.
    void removeByAction()
    {
        QAction* const action = anyAction();
        m_proxy.removeBackendAction(action);
        for (const QString& context : Contexts) {
            if (m_model.backends.value(context) == action && !m_proxy.getBackendAction(context)) {
                m_model.backends.remove(context);
                m_watches.remove(action);
                return;
            }
        }
        QVERIFY(m_model.backends.key(action, QStringLiteral("none")) == QLatin1String("none"));
    }

    void removeByContext()
    {
        const QString context = anyContext();
        QAction* const action = m_model.backends.take(context);
        if (action)
            m_watches.remove(action);
        QCOMPARE(m_proxy.removeBackendContext(context), action);
    }

    void setContexts()
    {
        QStringList contexts;
        for (int count = m_random.bounded(4); count > 0; --count)
            contexts.append(anyContext());
        m_model.contexts = contexts;
        m_proxy.setCurrentContext(contexts);
    }

    void edit(QAction* action)
    {
        const QString text =
            m_random.bounded(2) ? QString() : QString::number(m_random.bounded(1000));
        const bool flag = m_random.bounded(2);
        switch (m_random.bounded(9)) {
        case 0:
            action->setEnabled(flag);
            break;
        case 1:
            action->setCheckable(flag);
            break;
        case 2:
            action->setChecked(flag);
            break;
        case 3:
            action->setText(text);
            break;
        case 4:
            action->setIconText(text);
            break;
        case 5:
            action->setToolTip(text);
            break;
        case 6:
            action->setStatusTip(text);
            break;
        case 7:
            action->setWhatsThis(text);
            break;
        default:
            action->setShortcut(flag ? QKeySequence(QStringLiteral("Ctrl+K")) : QKeySequence());
            break;
        }
    }

    void trigger()
    {
        QAction* const active = m_model.active();
        int triggered = 0;
        const auto connection = active ? QObject::connect(active, &QAction::triggered,
                                    [&](bool on) {
                                        ++triggered;
                                        QCOMPARE(on, m_proxy.isChecked());
                                    })
                                       : QMetaObject::Connection();
        m_proxy.trigger();
        QObject::disconnect(connection);
        QCOMPARE(triggered, m_model.isTriggered() ? 1 : 0);
        // Any change of the default action brings the backend's checked state back.
        m_proxy.defaultProp()->setData(++m_edits);
        m_proxy.defaultProp()->setStatusTip(QString::number(m_edits));
    }

    void replaceAction()
    {
        auto& slot = m_actions[anyIndex()];
        QAction* const dying = slot.get();
        // As many registrations leave as are watched; the others would be left behind.
        const auto registered = m_model.backends.keys(dying).size();
        if (registered > 0 && m_watches.value(dying).size() != registered)
            return;
        // Of several registrations one leaves after the other, and listeners see it in between.
        if (registered > 1 && m_listenersCallBack)
            return;
        for (const QString& context : m_model.backends.keys(dying))
            m_model.backends.remove(context);
        m_watches.remove(dying);
        slot = std::make_unique<QAction>();
    }

    void compare()
    {
        m_recorder.clear();
        QCOMPARE(m_proxy.currentActiveBackendAction(), m_model.active());
        QCOMPARE(m_proxy.currentContext(), m_model.contexts);
        QCOMPARE(m_proxy.isEnabled(), m_model.isEnabled());
        QCOMPARE(m_proxy.isVisible(), m_model.isVisible());
        QCOMPARE(m_proxy.isCheckable(), m_model.isCheckable());
        QCOMPARE(m_proxy.isChecked(), m_model.isChecked());
        for (const auto property : {&QAction::text, &QAction::iconText, &QAction::toolTip,
                 &QAction::statusTip, &QAction::whatsThis})
            QCOMPARE((m_proxy.*property)(), expectedText(property));
        QCOMPARE(m_proxy.shortcut(), m_model.shortcut());
        for (const QString& context : Contexts)
            QCOMPARE(m_proxy.getBackendAction(context), m_model.backends.value(context));
        for (const auto& action : m_actions)
            QCOMPARE(followers(action.get()), action.get() == m_model.active() ? 1 : 0);
    }

    static int followers(const QAction* action)
    {
        struct Open : QAction
        {
            using QAction::receivers;
        };
        constexpr auto receivers = &Open::receivers;
        return (action->*receivers)(SIGNAL(changed()));
    }

    // An action without a text of its own for icon or tip makes one of its text.
    QString expectedText(QString (QAction::*property)() const) const
    {
        QAction shown;
        shown.setText(m_model.text(&QAction::text));
        shown.setIconText(m_model.text(&QAction::iconText));
        shown.setToolTip(m_model.text(&QAction::toolTip));
        shown.setStatusTip(m_model.text(&QAction::statusTip));
        shown.setWhatsThis(m_model.text(&QAction::whatsThis));
        return (shown.*property)();
    }

    Recorder m_recorder;
    QRandomGenerator m_random;
    std::vector<std::unique_ptr<QAction>> m_actions;
    ProxyAction m_proxy;
    ProxyModel m_model;
    /// The registrations of each action that the proxy still watches.
    QHash<QAction*, QStringList> m_watches;
    int m_edits = 0;
    int m_depth = 0;
    bool m_listenersCallBack = false;
};

} // namespace

class ProxyActionRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatTheModelShows_data() { addSeeds(20); }
    void showsWhatTheModelShows();
    void showsItWhateverListenersDo_data() { addSeeds(20); }
    void showsItWhateverListenersDo();
};

void ProxyActionRandomTest::showsWhatTheModelShows()
{
    QFETCH(quint32, seed);
    World world(seed);
    for (int i = 0; i < 1000 && !QTest::currentTestFailed(); ++i)
        world.step();
}

void ProxyActionRandomTest::showsItWhateverListenersDo()
{
    QFETCH(quint32, seed);
    World world(seed);
    world.letListenersCallBack();
    for (int i = 0; i < 1000 && !QTest::currentTestFailed(); ++i)
        world.step();
}

QTEST_MAIN(ProxyActionRandomTest)
#include "tst_proxy_action_random.moc"
