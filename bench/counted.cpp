// SPDX-License-Identifier: MIT
//
// Does one operation a hundred times: zentu_counted OPERATION. What it takes is counted by
// callgrind, from when measured() is entered.

#include "cmdline_parser.h"
#include "event_mgr.h"
#include "ievent_handler.h"
#include "object_pool.h"
#include "proxy_act.h"

#include <QApplication>

#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

extern "C" Q_NEVER_INLINE void measured(const std::function<void()>& operation)
{
    for (int i = 0; i < 100; ++i)
        operation();
}

namespace {

class Handler : public Zentu::IEventHandler
{
public:
    void handleEvent(Zentu::IEvent* /*event*/) override { }
};

// Each prepares and gives the operation, with what it needs kept alive.
using Operation = std::function<void()>;

Operation postDirect()
{
    const QString type = QStringLiteral("type");
    auto handler = std::make_shared<Handler>();
    handler->subscribe(type);
    return [handler, type] {
        Zentu::EventManager::instance()->postEvent(
            new Zentu::IEvent(type), Zentu::EventManager::Direct);
    };
}

Operation subscribe()
{
    auto handlers = std::make_shared<std::vector<std::unique_ptr<Handler>>>();
    for (int i = 0; i < 1000; ++i) {
        handlers->push_back(std::make_unique<Handler>());
        handlers->back()->subscribe(QStringLiteral("type %1").arg(i / 10));
    }
    const QString type = QStringLiteral("type 50");
    auto further = std::make_shared<Handler>();
    return [handlers, further, type] {
        further->subscribe(type);
        further->unsubscribe(type);
    };
}

Operation switchContext()
{
    const std::vector<QStringList> contexts = {{QStringLiteral("text")}, {QStringLiteral("image")}};
    auto owner = std::make_shared<QObject>();
    auto* const manager = Zentu::ProxyActionManager::instance();
    for (int i = 0; i < 10; ++i) {
        auto* const proxy = new Zentu::ProxyAction(owner.get());
        for (const QStringList& context : contexts)
            proxy->addBackendAction(new QAction(context.first(), owner.get()), context.first());
        manager->registerProxyAction(proxy, QString::number(i));
    }
    // The owner goes with the operation.
    return [owner, manager, contexts, turn = std::size_t(0)]() mutable {
        manager->setCurrentContext(contexts[++turn % 2]);
    };
}

std::shared_ptr<Zentu::CmdLineParser> parserWithOptions()
{
    auto parser = std::make_shared<Zentu::CmdLineParser>(QStringLiteral("program"));
    for (int i = 0; i < 100; ++i)
        parser->addOption(QStringLiteral("--option-%1").arg(i),
            QStringLiteral("Says what the option is there for, in a line and a little more."),
            i % 2 ? QString() : QStringLiteral("value"));
    return parser;
}

Operation parse()
{
    auto parser = parserWithOptions();
    QStringList args(QStringLiteral("program"));
    for (int i = 0; i < 50; ++i)
        args << QStringLiteral("--option-%1").arg(2 * i) << QStringLiteral("value");
    return [parser, args] { parser->parse(args); };
}

Operation help()
{
    auto parser = parserWithOptions();
    return [parser] { parser->helpMessage(); };
}

Operation pool()
{
    return [] {
        QObject object;
        Zentu::ObjectPool::instance()->addObject(&object);
    };
}

const struct
{
    const char* name;
    Operation (*prepare)();
} s_operations[] = {
    {"post", postDirect},
    {"subscribe", subscribe},
    {"switch", switchContext},
    {"parse", parse},
    {"help", help},
    {"pool", pool},
};

} // namespace

int main(int argc, char** argv)
{
    const QByteArray wanted(argc == 2 ? argv[1] : "");
    int qtArgc = 1;
    const QApplication application(qtArgc, argv);
    for (const auto& operation : s_operations) {
        if (wanted == operation.name) {
            const Operation prepared = operation.prepare();
            // Once before, for all that is made only once.
            prepared();
            measured(prepared);
            return 0;
        }
    }
    std::fputs("usage: zentu_counted post|subscribe|switch|parse|help|pool\n", stderr);
    return 2;
}
