// SPDX-License-Identifier: MIT
//
// Has handlers and events call back into the bus at every moment, and compares what comes of it
// with a model of its steps.

#include "event_mgr.h"
#include "ievent_handler.h"

#include "recorder.h"
#include "story.h"

#include <QCoreApplication>
#include <QPair>

#include <algorithm>
#include <utility>
#include <vector>

using namespace Support;

namespace {

struct Library
{
    using Event = Zentu::IEvent;
    using Handler = Zentu::IEventHandler;
    using Manager = Zentu::EventManager;

    static Manager* bus() { return Manager::instance(); }
    static void deliverQueued() { QCoreApplication::sendPostedEvents(bus(), QEvent::MetaCall); }
    static void tellTo(Story* /*story*/) { }
};

/// The same by its steps; the queue is a list, and only one thread posts.
struct Model
{
    class Manager;

    class Event
    {
    public:
        explicit Event(const QString& type)
            : m_type(type)
        {
        }
        virtual ~Event() = default;
        QString type() const { return m_type; }

    private:
        QString m_type;
    };

    class Handler
    {
    public:
        Handler() = default;
        virtual ~Handler() { bus()->unsubscribeAll(this); }
        Q_DISABLE_COPY(Handler)

        void subscribe(const QString& type) { bus()->subscribe(this, type); }
        void unsubscribe(const QString& type) { bus()->unsubscribe(this, type); }
        void setReceiving(bool receiving) { m_receiving = receiving; }
        bool isReceiving() const { return m_receiving; }
        virtual void handleEvent(Event* event) = 0;

    private:
        bool m_receiving = true;
    };

    class Manager
    {
    public:
        enum PostMode : int { Auto = 0, Direct = 1, Queued = 2 };

        void subscribe(Handler* handler, const QString& type)
        {
            const QString text = about("duplicated event subscription:", handler, type);
            if (getSubscribersFor(type).contains(handler)) {
                story->say(warning(text));
                return;
            }
            story->say(trace(about("new event subscription:", handler, type) + QLatin1Char(' ')));
            subscribers.prepend({type, handler});
        }

        void unsubscribe(Handler* handler, const QString& type)
        {
            const QString text = about("unsubscribe event:", handler, type) + QLatin1Char(' ');
            if (!getSubscribersFor(type).contains(handler)) {
                story->say(warning(text + QLatin1String("no match found")));
                return;
            }
            story->say(trace(text));
            subscribers.removeAll({type, handler});
        }

        void unsubscribeAll(Handler* handler)
        {
            story->say(trace(self() + QLatin1String(" unsubscribe all events for: ")
                + printed(static_cast<const void*>(handler)) + QLatin1Char(' ')));
            subscribers.erase(std::remove_if(subscribers.begin(), subscribers.end(),
                                  [=](const auto& entry) { return entry.second == handler; }),
                subscribers.end());
        }

        QList<Handler*> getSubscribersFor(const QString& type) const
        {
            QList<Handler*> handlers;
            for (const auto& entry : subscribers) {
                if (entry.first == type)
                    handlers.append(entry.second);
            }
            return handlers;
        }

        void postEvent(Event* event, PostMode mode)
        {
            story->say(trace(self() + QLatin1String(" post event IEvent(")
                + printed(static_cast<const void*>(event)) + QLatin1String(", type = ")
                + quoted(event->type()) + QLatin1String(") ") + QString::number(mode)
                + QLatin1Char(' ')));
            if (mode == Queued)
                queue.push_back(event);
            else
                dispatch(event);
        }

        void dispatch(Event* event)
        {
            const QList<Handler*> handlers = getSubscribersFor(event->type());
            for (Handler* handler : handlers) {
                if (handler->isReceiving())
                    handler->handleEvent(event);
            }
            delete event;
        }

        Story* story = nullptr;
        std::vector<Event*> queue;
        std::size_t queueEnd = 0;

    private:
        QString self() const
        {
            return QLatin1String("Zentu::EventManager(") + printed(static_cast<const void*>(this))
                + QLatin1Char(')');
        }

        QString about(const char* text, const Handler* handler, const QString& type) const
        {
            return self() + QLatin1Char(' ') + QLatin1String(text) + QLatin1Char(' ')
                + printed(static_cast<const void*>(handler)) + QLatin1Char(' ') + quoted(type);
        }

        QList<QPair<QString, Handler*>> subscribers;
    };

    static Manager* bus()
    {
        static Manager manager;
        return &manager;
    }

    // As Qt does: what is posted meanwhile waits for the next time, which may be within this one.
    static void deliverQueued()
    {
        auto& queue = bus()->queue;
        bus()->queueEnd = queue.size();
        for (std::size_t i = 0; i < bus()->queueEnd; ++i) {
            if (Event* const event = std::exchange(queue[i], nullptr))
                bus()->dispatch(event);
        }
    }

    static void tellTo(Story* story) { bus()->story = story; }
};

template <typename Bus>
class Tale : public Story
{
public:
    explicit Tale(quint32 seed)
        : Story(seed)
    {
        Bus::tellTo(this);
        call(Bus::bus(), QStringLiteral("bus"));
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    class Handler : public Bus::Handler
    {
    public:
        Handler(Tale* tale, const QString& name)
            : m_tale(tale)
            , m_name(name)
        {
        }

        void handleEvent(typename Bus::Event* event) override
        {
            m_tale->heard(this, static_cast<Event*>(event));
        }

        QString name() const { return m_name; }

    private:
        Tale* m_tale;
        QString m_name;
    };

    class Event : public Bus::Event
    {
    public:
        Event(Tale* tale, const QString& name, const QString& type)
            : Bus::Event(type)
            , m_tale(tale)
            , m_name(name)
        {
        }
        ~Event() override { m_tale->ended(this); }
        Q_DISABLE_COPY(Event)

        QString name() const { return m_name; }

    private:
        Tale* m_tale;
        QString m_name;
    };

    /// A delivery that is under way, and whom it still calls.
    struct Delivery
    {
        const Event* event;
        QList<typename Bus::Handler*> pending;
    };

    void heard(Handler* handler, Event* event)
    {
        // With the first that hears it, nothing has changed since the bus took its list.
        if (m_deliveries.isEmpty() || m_deliveries.last().event != event)
            m_deliveries.append({event, Bus::bus()->getSubscribersFor(event->type())});
        auto& pending = m_deliveries.last().pending;
        pending = pending.mid(pending.indexOf(handler) + 1);
        calledBack(handler->name() + QLatin1String(" hears ") + event->name());
    }

    void ended(const Event* event)
    {
        if (!m_deliveries.isEmpty() && m_deliveries.last().event == event)
            m_deliveries.removeLast();
        calledBack(event->name() + QLatin1String(" is gone"));
    }

    // Such a handler must not be destroyed: the bus would call what is gone.
    bool isPending(Handler* handler) const
    {
        return std::any_of(m_deliveries.begin(), m_deliveries.end(),
            [=](const Delivery& delivery) { return delivery.pending.contains(handler); });
    }

    QString anyType()
    {
        static const QString types[] = {QString(), QStringLiteral("x"), QStringLiteral("X\"")};
        return types[below(3)];
    }

    void post(typename Bus::Manager::PostMode mode)
    {
        const QString name = QStringLiteral("event %1").arg(++m_events);
        auto* const event = new Event(this, name, anyType());
        call(static_cast<typename Bus::Event*>(event), name);
        Bus::bus()->postEvent(event, mode);
    }

    void step() override
    {
        using Manager = typename Bus::Manager;
        if (m_isOver)
            return;
        Handler* const handler =
            m_handlers.isEmpty() ? nullptr : m_handlers.at(below(int(m_handlers.size())));
        const int what = handler ? below(14) : 0;
        switch (what) {
        case 0:
            if (m_handlers.size() == 6)
                break;
            m_handlers.append(
                new Handler(this, QStringLiteral("handler %1").arg(++m_handlersEver)));
            call(static_cast<typename Bus::Handler*>(m_handlers.last()), m_handlers.last()->name());
            break;
        case 1:
            if (!isPending(handler)) {
                m_handlers.removeOne(handler);
                delete handler;
            }
            break;
        case 2:
        case 3:
        case 4:
            handler->subscribe(anyType());
            break;
        case 5:
            handler->unsubscribe(anyType());
            break;
        case 6:
            Bus::bus()->unsubscribeAll(handler);
            break;
        case 7:
            handler->setReceiving(onceIn(2));
            break;
        case 8:
            post(Manager::Direct);
            break;
        case 9:
            post(static_cast<typename Manager::PostMode>(7));
            break;
        case 10:
            post(Manager::Auto);
            break;
        case 11:
            post(Manager::Queued);
            break;
        case 12:
            Bus::deliverQueued();
            break;
        default:
            listSubscribers(anyType());
            break;
        }
    }

    void listSubscribers(const QString& type)
    {
        QStringList names;
        const QList<typename Bus::Handler*> handlers = Bus::bus()->getSubscribersFor(type);
        for (auto* handler : handlers)
            names.append(static_cast<Handler*>(handler)->name());
        say(quoted(type) + QLatin1String(" reaches ") + names.join(QLatin1String(", ")));
    }

    void end() override
    {
        m_isOver = true;
        Bus::deliverQueued();
        qDeleteAll(m_handlers);
    }

    Recorder m_recorder;
    QList<Handler*> m_handlers;
    QList<Delivery> m_deliveries;
    int m_handlersEver = 0;
    int m_events = 0;
    bool m_isOver = false;
};

} // namespace

class EventManagerRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callbacksEqualTheModel_data() { addSeeds(10); }
    void callbacksEqualTheModel();
};

void EventManagerRandomTest::callbacksEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = Tale<Library>(seed).tell(400);
    QVERIFY(library.size() > 200);
    compareAccounts(library, Tale<Model>(seed).tell(400));
}

QTEST_GUILESS_MAIN(EventManagerRandomTest)
#include "tst_event_mgr_random.moc"
