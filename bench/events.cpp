// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "event_mgr.h"
#include "ievent_handler.h"
#include "trace_p.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QMultiMap>
#include <QReadLocker>
#include <QReadWriteLock>
#include <QWriteLocker>

#include <iterator>
#include <memory>

namespace Bench {
namespace {

using Zentu::IEvent;
using Zentu::IEventHandler;

class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { ++calls; }
    int calls = 0;
};

/// An event manager by hand; its slot needs a class that is no template.
class BusBase : public QObject
{
    Q_OBJECT

public:
    QList<IEventHandler*> getSubscribersFor(const QString& type)
    {
        const QReadLocker locker(&lock);
        return subscribers.values(type);
    }

public Q_SLOTS:
    void dispatch(Zentu::IEvent* event)
    {
        const QList<IEventHandler*> handlers = getSubscribersFor(event->type());
        for (IEventHandler* handler : handlers) {
            if (handler->isReceiving())
                handler->handleEvent(event);
        }
        delete event;
    }

protected:
    QMultiMap<QString, IEventHandler*> subscribers;
    QReadWriteLock lock;
};

template <typename Line>
class Bus : public BusBase
{
public:
    Bus() { qRegisterMetaType<IEvent*>("Zentu::IEvent*"); }

    void subscribe(IEventHandler* handler, const QString& type)
    {
        const QWriteLocker locker(&lock);
        if (subscribers.contains(type, handler))
            return;
        Line() << self() << "new event subscription:" << handler << type;
        subscribers.insert(type, handler);
    }

    void unsubscribe(IEventHandler* handler, const QString& type)
    {
        const QWriteLocker locker(&lock);
        if (!subscribers.contains(type, handler))
            return;
        Line() << self() << "unsubscribe event:" << handler << type;
        subscribers.remove(type, handler);
    }

    void postEvent(IEvent* event, Qt::ConnectionType type)
    {
        static const QMetaMethod method =
            staticMetaObject.method(staticMetaObject.indexOfSlot("dispatch(Zentu::IEvent*)"));
        Line() << self() << "post event" << static_cast<const IEvent*>(event) << int(type);
        method.invoke(this, type, Q_ARG(Zentu::IEvent*, event));
    }

protected:
    const QObject* self() const { return this; }
};

/// As one writes it at first: everything by name, lists copied to be searched.
class PlainBus : public Bus<PlainLine>
{
public:
    void subscribe(IEventHandler* handler, const QString& type)
    {
        const QWriteLocker locker(&lock);
        if (subscribers.values(type).contains(handler))
            return;
        PlainLine() << self() << "new event subscription:" << handler << type;
        subscribers.insert(type, handler);
    }

    void unsubscribe(IEventHandler* handler, const QString& type)
    {
        const QWriteLocker locker(&lock);
        if (subscribers.values(type).count(handler) == 0)
            return;
        PlainLine() << self() << "unsubscribe event:" << handler << type;
        subscribers.remove(type, handler);
    }

    void unsubscribeAll(IEventHandler* handler)
    {
        const QWriteLocker locker(&lock);
        PlainLine() << self() << "unsubscribe all events for:" << handler;
        for (auto it = subscribers.begin(); it != subscribers.end();)
            it = it.value() == handler ? subscribers.erase(it) : std::next(it);
    }

    void postEvent(IEvent* event, Qt::ConnectionType type)
    {
        PlainLine() << self() << "post event" << static_cast<const IEvent*>(event) << int(type);
        QMetaObject::invokeMethod(this, "dispatch", type, Q_ARG(Zentu::IEvent*, event));
    }
};

/// What Qt has for events: one event class, one receiver.
class QtBus : public Bus<HandLine>
{
public:
    void postEvent(IEvent* event, Qt::ConnectionType type)
    {
        HandLine() << self() << "post event" << static_cast<const IEvent*>(event) << int(type);
        QCoreApplication::postEvent(this, new Carrier(event));
    }

protected:
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        dispatch(static_cast<Carrier*>(event)->event);
        return true;
    }

private:
    struct Carrier : QEvent
    {
        explicit Carrier(IEvent* carried)
            : QEvent(QEvent::User)
            , event(carried)
        {
        }
        IEvent* event;
    };
};

QString typeName(int number)
{
    return QStringLiteral("document.changed.%1").arg(number);
}

void post(Zentu::EventManager& bus, IEvent* event, Qt::ConnectionType type)
{
    bus.postEvent(event, static_cast<Zentu::EventManager::PostMode>(type));
}

template <typename B>
void post(B& bus, IEvent* event, Qt::ConnectionType type)
{
    bus.postEvent(event, type);
}

// Handlers of one type name each, as many as the row says, of `perType` a name.
template <typename B>
struct Subscribed
{
    Subscribed(int count, int perType)
    {
        for (int i = 0; i < count; ++i) {
            handlers.push_back(std::make_unique<Handler>());
            bus.subscribe(handlers.back().get(), typeName(i / perType));
        }
    }

    B bus;
    std::vector<std::unique_ptr<Handler>> handlers;
};

template <typename B>
void direct(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    Subscribed<B> subscribed(count, count);
    const QString type = typeName(0);
    repeat(state, [&] { post(subscribed.bus, new IEvent(type), Qt::DirectConnection); });
}

// The least that a handler can cost.
void lockAndCall(benchmark::State& state)
{
    Subscribed<Zentu::EventManager> subscribed(static_cast<int>(state.range(0)), 1);
    QReadWriteLock lock;
    repeat(state, [&] {
        for (const auto& handler : subscribed.handlers) {
            {
                const QReadLocker locker(&lock);
            }
            IEventHandler* called = handler.get();
            benchmark::DoNotOptimize(called);
            called->handleEvent(nullptr);
        }
    });
}

template <typename B>
void queued(benchmark::State& state)
{
    Subscribed<B> subscribed(1, 1);
    const QString type = typeName(0);
    repeat(state, [&] {
        for (std::int64_t i = 0; i < state.range(0); ++i)
            post(subscribed.bus, new IEvent(type), Qt::QueuedConnection);
        QCoreApplication::processEvents();
    });
}

// A further handler comes, and goes by itself or as one that is destroyed.
template <typename B, bool OneType, bool IsDestroyed = false>
void subscribeAndUnsubscribe(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    Subscribed<B> subscribed(count, OneType ? count : 10);
    Handler further;
    const QString type = typeName(OneType ? 0 : count / 20);
    repeat(state, [&] {
        subscribed.bus.subscribe(&further, type);
        if constexpr (IsDestroyed)
            subscribed.bus.unsubscribeAll(&further);
        else
            subscribed.bus.unsubscribe(&further, type);
    });
}

// What no way of doing it can do without: twice the lock and a line, and the entry itself, of which
// it is known where it stands and that there is no other.
template <bool OneType>
void leastForSubscribe(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    const int perType = OneType ? count : 10;
    const QObject bus;
    const Handler handler;
    QReadWriteLock lock;
    QMultiMap<QString, const IEventHandler*> entries;
    for (int i = 0; i < count; ++i)
        entries.insert(typeName(i / perType), nullptr);
    const QString type = typeName(OneType ? 0 : count / 20);
    const auto line = [&](const char* text) {
        Zentu::Trace() << &bus << text << static_cast<const IEventHandler*>(&handler) << type;
    };
    repeat(state, [&] {
        QWriteLocker first(&lock);
        line("new event subscription:");
        const auto place = entries.insert(type, &handler);
        first.unlock();
        const QWriteLocker second(&lock);
        line("unsubscribe event:");
        entries.erase(place);
    });
}

template <typename B>
void subscribers(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    Subscribed<B> subscribed(count, 10);
    const QString type = typeName(count / 20);
    repeat(state, [&] { benchmark::DoNotOptimize(subscribed.bus.getSubscribersFor(type)); });
}

// What no way of doing it can do without: the lock, one look-up, a step over each entry (here even
// without looking where they end), and one block of memory for the list.
void leastForSubscribers(benchmark::State& state)
{
    constexpr int perType = 10;
    QReadWriteLock lock;
    QMultiMap<QString, IEventHandler*> entries;
    QList<IEventHandler*> known;
    for (int i = 0; i < state.range(0); ++i)
        entries.insert(typeName(i / perType), nullptr);
    for (int i = 0; i < perType; ++i)
        known.append(nullptr);
    const QString type = typeName(static_cast<int>(state.range(0)) / 20);
    repeat(state, [&] {
        const QReadLocker locker(&lock);
        auto it = qAsConst(entries).constFind(type);
        for (int i = 0; i < perType; ++i)
            benchmark::DoNotOptimize(*it++);
        QList<IEventHandler*> result = known;
        result.detach();
        benchmark::DoNotOptimize(result);
    });
}

} // namespace

void addEventRows()
{
    const std::vector<int> handlers = {0, 1, 10, 100};
    add("events/post direct", "zentu", handlers, direct<Zentu::EventManager>);
    add("events/post direct", "core", handlers, direct<Bus<NoLine>>);
    add("events/post direct", "hand", handlers, direct<Bus<HandLine>>);
    add("events/post direct", "plain", handlers, direct<PlainBus>);
    add("events/post direct", "lock and call", handlers, lockAndCall);

    const std::vector<int> events = {1, 100};
    add("events/post queued", "zentu", events, queued<Zentu::EventManager>);
    add("events/post queued", "core", events, queued<Bus<NoLine>>);
    add("events/post queued", "hand", events, queued<Bus<HandLine>>);
    add("events/post queued", "plain", events, queued<PlainBus>);
    add("events/post queued", "QCoreApplication", events, queued<QtBus>);

    const std::vector<int> entries = {10, 100, 1000, 10000, 100000};
    // For those that search: only to subscribe them all takes the square of it.
    const std::vector<int> fewer = {10, 100, 1000, 10000};
    std::string row = "events/subscribe and unsubscribe";
    add(row, "zentu", entries, subscribeAndUnsubscribe<Zentu::EventManager, false>);
    add(row, "core", entries, subscribeAndUnsubscribe<Bus<NoLine>, false>);
    add(row, "hand", entries, subscribeAndUnsubscribe<Bus<HandLine>, false>);
    add(row, "plain", entries, subscribeAndUnsubscribe<PlainBus, false>);
    add(row, "least", entries, leastForSubscribe<false>);
    row = "events/subscribe and unsubscribe, all of one name";
    add(row, "zentu", entries, subscribeAndUnsubscribe<Zentu::EventManager, true>);
    add(row, "hand", fewer, subscribeAndUnsubscribe<Bus<HandLine>, true>);
    add(row, "plain", fewer, subscribeAndUnsubscribe<PlainBus, true>);
    add(row, "least", entries, leastForSubscribe<true>);
    row = "events/subscribe and end";
    add(row, "zentu", entries, subscribeAndUnsubscribe<Zentu::EventManager, false, true>);
    add(row, "plain", entries, subscribeAndUnsubscribe<PlainBus, false, true>);
    add(row, "least", entries, leastForSubscribe<false>);
    row = "events/subscribe and end, all of one name";
    add(row, "zentu", entries, subscribeAndUnsubscribe<Zentu::EventManager, true, true>);
    add(row, "plain", fewer, subscribeAndUnsubscribe<PlainBus, true, true>);
    add(row, "least", entries, leastForSubscribe<true>);
    add("events/getSubscribersFor", "zentu", entries, subscribers<Zentu::EventManager>);
    add("events/getSubscribersFor", "least", entries, leastForSubscribers);
    add("events/getSubscribersFor", "plain", entries, subscribers<PlainBus>);
}

} // namespace Bench

#include "events.moc"
