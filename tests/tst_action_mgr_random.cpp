// SPDX-License-Identifier: MIT
//
// Has menus and toolbars call back into their registry when they are connected, disconnected and
// destroyed, and compares what comes of it with a model of its steps.

#include "action_mgr.h"

#include "recorder.h"
#include "story.h"

#include <QHash>
#include <QMenu>
#include <QToolBar>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

using namespace Support;

namespace {

using Tell = std::function<void(const char*)>;

/// The registry itself, with widgets that tell what is done with them.
struct Library
{
    using Manager = Zentu::ActionManager;
    using Menu = QMenu;
    using ToolBar = QToolBar;

    template <typename Base>
    class Telling : public Base
    {
    public:
        explicit Telling(Tell tell)
            : m_tell(std::move(tell))
        {
            QObject::connect(this, &QObject::destroyed, [tell = m_tell] { tell("is destroyed"); });
            m_isMade = true;
        }

    protected:
        void connectNotify(const QMetaMethod& /*signal*/) override
        {
            if (m_isMade)
                m_tell("is connected");
        }
        void disconnectNotify(const QMetaMethod& /*signal*/) override { m_tell("is disconnected"); }

    private:
        Tell m_tell;
        bool m_isMade = false;
    };

    static void sayTo(const std::function<void(const QString&)>& /*say*/) { }
};

/// The same by its steps; a connection is an entry in the list of a widget.
struct Model
{
    class Manager;

    /// What Qt does for a widget.
    class Widget
    {
    public:
        explicit Widget(Tell tell)
            : m_tell(std::move(tell))
        {
        }
        virtual ~Widget() = default;
        Q_DISABLE_COPY(Widget)

        void connect(Manager* manager)
        {
            m_receivers.push_back(std::make_shared<Manager*>(manager));
            m_tell("is connected");
        }

        void disconnect(Manager* manager)
        {
            bool wasConnected = false;
            for (const auto& receiver : m_receivers) {
                wasConnected = wasConnected || *receiver == manager;
                if (*receiver == manager)
                    *receiver = nullptr;
            }
            if (wasConnected)
                m_tell("is disconnected");
        }

    protected:
        // To those that are connected before, and still are when their turn comes.
        template <typename W>
        void tellDestroyed(W* widget)
        {
            const auto receivers = m_receivers;
            std::exchange(m_tell, [](const char*) {})("is destroyed");
            for (const auto& receiver : receivers) {
                if (*receiver)
                    (*receiver)->onDestroyed(widget);
            }
        }

    private:
        Tell m_tell;
        std::vector<std::shared_ptr<Manager*>> m_receivers;
    };

    class Menu : public Widget
    {
    public:
        using Widget::Widget;
        ~Menu() override { tellDestroyed(this); }
    };

    class ToolBar : public Widget
    {
    public:
        using Widget::Widget;
        ~ToolBar() override { tellDestroyed(this); }
    };

    template <typename Base>
    using Telling = Base;

    class Manager
    {
    public:
        static Manager* instance()
        {
            static Manager manager;
            return &manager;
        }

        void registerMenu(const QString& id, Menu* menu)
        {
            add(m_menus, " register menu ", "QMenu", id, menu);
        }
        void registerToolbar(const QString& id, ToolBar* toolBar)
        {
            add(m_toolBars, " register toolbar ", "QToolBar", id, toolBar);
        }
        Menu* getMenu(const QString& id) const { return m_menus.value(id); }
        ToolBar* getToolbar(const QString& id) const { return m_toolBars.value(id); }
        void onDestroyed(Menu* menu) { drop(m_menus, " menu destroyed ", menu); }
        void onDestroyed(ToolBar* toolBar) { drop(m_toolBars, " toolbar destroyed ", toolBar); }

        void clear()
        {
            say(trace(self() + QLatin1String(" clear ")));
            forget(m_menus);
            forget(m_toolBars);
        }

        std::function<void(const QString&)> say;

    private:
        static QString shown(const char* className, const void* object)
        {
            return QLatin1String(className) + QLatin1Char('(') + printed(object)
                + QLatin1String(") ");
        }

        QString self() const { return shown("Zentu::ActionManager", this).trimmed(); }

        template <typename W>
        void add(QHash<QString, W*>& widgets, const char* text, const char* className,
            const QString& id, W* widget)
        {
            const QString line = self() + QLatin1String(text) + quoted(id) + QLatin1Char(' ')
                + shown(className, widget);
            if (widgets.contains(id)) {
                say(critical(line + QLatin1String("duplicated ID")));
                return;
            }
            say(trace(line));
            widgets.insert(id, widget);
            widget->connect(this);
        }

        template <typename W>
        void drop(QHash<QString, W*>& widgets, const char* text, W* widget)
        {
            say(trace(self() + QLatin1String(text) + shown("QWidget", widget)));
            for (auto it = widgets.begin(); it != widgets.end(); ++it) {
                if (it.value() == widget) {
                    widgets.erase(it);
                    return;
                }
            }
        }

        template <typename W>
        void forget(QHash<QString, W*>& widgets)
        {
            const QList<W*> all = widgets.values();
            for (W* widget : all)
                widget->disconnect(this);
            widgets = {};
        }

        QHash<QString, Menu*> m_menus;
        QHash<QString, ToolBar*> m_toolBars;
    };

    static void sayTo(const std::function<void(const QString&)>& say)
    {
        Manager::instance()->say = say;
    }
};

template <typename Registry>
class Tale : public Story
{
public:
    explicit Tale(quint32 seed)
        : Story(seed)
    {
        call(manager(), QStringLiteral("registry"));
        Registry::sayTo([this](const QString& line) { say(line); });
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    using Manager = typename Registry::Manager;
    using Menu = typename Registry::Menu;
    using ToolBar = typename Registry::ToolBar;

    static Manager* manager() { return Manager::instance(); }

    template <typename Widget>
    Widget* make(const char* kind)
    {
        const QString name = QStringLiteral("%1 %2").arg(QLatin1String(kind)).arg(++m_made);
        auto* const widget =
            new typename Registry::template Telling<Widget>([this, name](const char* what) {
                calledBack(name + QLatin1Char(' ') + QLatin1String(what));
            });
        call(widget, name);
        return widget;
    }

    // Not while the registry walks a list in which the widget may be: it would call what is gone.
    // And not from inside a call of its own, as that goes back to it.
    template <typename Widget>
    void destroyOne(std::vector<Widget*>& widgets)
    {
        if (isCallback() || widgets.empty())
            return;
        const auto it = widgets.begin() + below(int(widgets.size()));
        Widget* const widget = *it;
        widgets.erase(it);
        delete widget;
    }

    void step() override
    {
        if (m_isOver)
            return;
        const QString id = QString::number(below(5));
        switch (below(12)) {
        case 0:
            if (m_menus.size() < 6)
                m_menus.push_back(make<Menu>("menu"));
            break;
        case 1:
            if (m_toolBars.size() < 3)
                m_toolBars.push_back(make<ToolBar>("toolbar"));
            break;
        case 2:
        case 3:
        case 4:
        case 5:
            if (!m_menus.empty())
                manager()->registerMenu(id, m_menus[std::size_t(below(int(m_menus.size())))]);
            break;
        case 6:
        case 7:
            if (!m_toolBars.empty())
                manager()->registerToolbar(
                    id, m_toolBars[std::size_t(below(int(m_toolBars.size())))]);
            break;
        case 8:
            manager()->clear();
            break;
        case 9:
            destroyOne(m_menus);
            break;
        case 10:
            destroyOne(m_toolBars);
            break;
        default:
            say(QStringLiteral("%1 is %2 and %3")
                    .arg(id, printed(static_cast<const void*>(manager()->getMenu(id))),
                        printed(static_cast<const void*>(manager()->getToolbar(id)))));
            break;
        }
    }

    void end() override
    {
        m_isOver = true;
        manager()->clear();
        qDeleteAll(m_menus);
        qDeleteAll(m_toolBars);
    }

    Recorder m_recorder;
    std::vector<Menu*> m_menus;
    std::vector<ToolBar*> m_toolBars;
    int m_made = 0;
    bool m_isOver = false;
};

} // namespace

class ActionManagerRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callbacksEqualTheModel_data() { addSeeds(20); }
    void callbacksEqualTheModel();
};

void ActionManagerRandomTest::callbacksEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = Tale<Library>(seed).tell(200);
    QVERIFY(library.size() > 100);
    compareAccounts(library, Tale<Model>(seed).tell(200));
}

QTEST_MAIN(ActionManagerRandomTest)
#include "tst_action_mgr_random.moc"
