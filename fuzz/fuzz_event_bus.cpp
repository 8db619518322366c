// SPDX-License-Identifier: MIT
//
// Runs a made-up program of subscriptions, posts, pauses and destructions, some of it from inside
// of handlers, and compares every delivery with a model.

#include "fuzz_input.h"

#include "event_mgr.h"
#include "ievent_handler.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <algorithm>
#include <deque>
#include <memory>
#include <thread>
#include <vector>

namespace {

class Handler;

/// What the bus should do: subscriptions from oldest to newest, and deliveries under way.
struct Model
{
    struct Subscription
    {
        QString type;
        Handler* handler;
    };
    struct Delivery
    {
        const Zentu::IEvent* event;
        std::vector<Handler*> waiting;
    };

    std::vector<Subscription> subscriptions;
    std::vector<Delivery> deliveries;
    std::deque<const Zentu::IEvent*> queue;
    int warnings = 0;

    Delivery& deliveryOf(const Zentu::IEvent* event);
    void onHandled(const Zentu::IEvent* event, const Handler* handler);
    void onDeleted(const Zentu::IEvent* event);
    bool isSubscribed(const Handler* handler, const QString& type) const;
};

Model* s_model = nullptr;
Fuzz::Input* s_input = nullptr;
int s_warnings = 0;

/// An event that tells when it is deleted.
class Event : public Zentu::IEvent
{
public:
    using IEvent::IEvent;
    ~Event() override { s_model->onDeleted(this); }
};

/// A handler that goes on with the program.
class Handler : public Zentu::IEventHandler
{
public:
    void handleEvent(Zentu::IEvent* event) override;
};

Model::Delivery& Model::deliveryOf(const Zentu::IEvent* event)
{
    if (deliveries.empty() || deliveries.back().event != event) {
        Delivery delivery{event, {}};
        for (auto it = subscriptions.rbegin(); it != subscriptions.rend(); ++it) {
            if (it->type == event->type())
                delivery.waiting.push_back(it->handler);
        }
        const auto queued = std::find(queue.begin(), queue.end(), event);
        if (queued != queue.end()) {
            Fuzz::expect(queued == queue.begin(), "order of queued events");
            queue.pop_front();
        }
        deliveries.push_back(delivery);
    }
    return deliveries.back();
}

void Model::onHandled(const Zentu::IEvent* event, const Handler* handler)
{
    auto& waiting = deliveryOf(event).waiting;
    while (!waiting.empty() && !waiting.front()->isReceiving())
        waiting.erase(waiting.begin());
    Fuzz::expect(!waiting.empty() && waiting.front() == handler, "handler and its turn");
    waiting.erase(waiting.begin());
}

void Model::onDeleted(const Zentu::IEvent* event)
{
    for (const Handler* handler : deliveryOf(event).waiting)
        Fuzz::expect(!handler->isReceiving(), "handlers left out");
    deliveries.pop_back();
}

bool Model::isSubscribed(const Handler* handler, const QString& type) const
{
    return std::any_of(subscriptions.begin(), subscriptions.end(),
        [&](const Subscription& s) { return s.handler == handler && s.type == type; });
}

std::vector<std::unique_ptr<Handler>> s_handlers;

QString anyType()
{
    static const QString types[] = {
        QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("A"), QString()};
    return types[s_input->number(4)];
}

Handler* anyHandler()
{
    return s_handlers[static_cast<std::size_t>(
                          s_input->number(static_cast<int>(s_handlers.size())))]
        .get();
}

void subscribe()
{
    Handler* const handler = anyHandler();
    const QString type = anyType();
    if (s_model->isSubscribed(handler, type))
        ++s_model->warnings;
    else
        s_model->subscriptions.push_back({type, handler});
    handler->subscribe(type);
}

void unsubscribe()
{
    Handler* const handler = anyHandler();
    const QString type = anyType();
    if (!s_model->isSubscribed(handler, type))
        ++s_model->warnings;
    auto& all = s_model->subscriptions;
    all.erase(
        std::remove_if(all.begin(), all.end(),
            [&](const Model::Subscription& s) { return s.handler == handler && s.type == type; }),
        all.end());
    handler->unsubscribe(type);
}

void post()
{
    using Zentu::EventManager;
    static const EventManager::PostMode modes[] = {EventManager::Auto, EventManager::Direct,
        EventManager::Queued, static_cast<EventManager::PostMode>(7),
        static_cast<EventManager::PostMode>(-1)};
    auto* event = new Event(anyType());
    const EventManager::PostMode mode = modes[s_input->number(5)];
    const std::size_t depth = s_model->deliveries.size();
    if (mode == EventManager::Queued)
        s_model->queue.push_back(event);
    EventManager::instance()->postEvent(event, mode);
    Fuzz::expect(s_model->deliveries.size() == depth, "deleted on return");
}

void postAndWait()
{
    // The thread of the bus cannot wait for itself, and in a delivery it is busy.
    if (!s_model->deliveries.empty())
        return;
    // What is queued comes first, and another thread's event has its place behind it.
    while (!s_model->queue.empty())
        QCoreApplication::processEvents();
    auto* const event = new Event(anyType());
    s_model->queue.push_back(event);
    QEventLoop loop;
    std::thread poster([&] {
        Zentu::EventManager::instance()->postEvent(event, Zentu::EventManager::BlockingQueued);
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    poster.join();
    Fuzz::expect(s_model->deliveries.empty(), "deleted when the wait is over");
}

void changeHandlers()
{
    // Not from inside of a delivery, whose snapshot may hold the handler.
    if (!s_model->deliveries.empty())
        return;
    auto& handler =
        s_handlers[static_cast<std::size_t>(s_input->number(static_cast<int>(s_handlers.size())))];
    auto& all = s_model->subscriptions;
    all.erase(std::remove_if(all.begin(), all.end(),
                  [&](const Model::Subscription& s) { return s.handler == handler.get(); }),
        all.end());
    handler.reset();
    handler = std::make_unique<Handler>();
}

void checkSubscribers()
{
    const QString type = anyType();
    QList<Zentu::IEventHandler*> expected;
    for (const auto& subscription : s_model->subscriptions) {
        if (subscription.type == type)
            expected.prepend(subscription.handler);
    }
    Fuzz::expect(
        Zentu::EventManager::instance()->getSubscribersFor(type) == expected, "subscribers");
}

void step()
{
    switch (s_input->number(9)) {
    case 0:
    case 1:
        subscribe();
        break;
    case 2:
        unsubscribe();
        break;
    case 3:
    case 4:
        // A handler that posts is called by what it posts.
        if (s_model->deliveries.size() < 6)
            post();
        break;
    case 5:
        anyHandler()->setReceiving(s_input->flag());
        break;
    case 6:
        changeHandlers();
        break;
    case 7:
        checkSubscribers();
        break;
    case 8:
        postAndWait();
        break;
    }
}

void Handler::handleEvent(Zentu::IEvent* event)
{
    s_model->onHandled(event, this);
    for (int steps = s_input->number(3); steps > 0 && !s_input->atEnd(); --steps)
        step();
}

void countWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
    if (type == QtWarningMsg)
        ++s_warnings;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static QCoreApplication application(*argc, *argv);
    qInstallMessageHandler(countWarnings);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Fuzz::Input input(data, size);
    Model model;
    s_input = &input;
    s_model = &model;
    s_warnings = 0;
    for (int i = 0; i < 4; ++i)
        s_handlers.push_back(std::make_unique<Handler>());

    while (!input.atEnd()) {
        step();
        if (input.number(8) == 0)
            QCoreApplication::processEvents();
    }
    while (!model.queue.empty())
        QCoreApplication::processEvents();
    Fuzz::expect(model.deliveries.empty(), "deliveries come to an end");
    Fuzz::expect(s_warnings == model.warnings, "warnings");
    s_handlers.clear();
    return 0;
}
