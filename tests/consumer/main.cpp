// SPDX-License-Identifier: MIT
//
// A program as someone else writes it: an event, an action that follows a context, an option.

#include <ZentuKit/CmdLineParser>
#include <ZentuKit/ContextManager>
#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>
#include <ZentuKit/ProxyActionManager>
#include <ZentuKit/proxy_act.h>
#ifdef WITH_RECORDER
#include <ZentuKit/wisp_recorder.h>
#endif

#include <QApplication>

#include <cstdio>

class Listener : public Zentu::IEventHandler
{
public:
    void handleEvent(Zentu::IEvent* event) override
    {
        std::printf("heard %s\n", qUtf8Printable(event->type()));
    }
};

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);

    Zentu::CmdLineParser parser(QStringLiteral("consumer"));
    parser.addOption(QStringLiteral("--type"), QString(), QStringLiteral("name"));
    if (!parser.parse(QApplication::arguments()))
        return 2;

    Listener listener;
    listener.subscribe(parser.getValue(QStringLiteral("type")));
    Zentu::EventManager::instance()->postEvent(
        new Zentu::IEvent(parser.getValue(QStringLiteral("type"))));

    Zentu::ProxyAction proxy;
    QAction backend(QStringLiteral("Copy"), nullptr);
    proxy.addBackendAction(&backend, QStringLiteral("text"));
    Zentu::ProxyActionManager::instance()->registerProxyAction(&proxy, QStringLiteral("copy"));
    Zentu::ContextManager::instance()->addContext(QStringLiteral("text"));
    Zentu::ProxyActionManager::instance()->setCurrentContext(
        Zentu::ContextManager::instance()->currentContexts());
    std::printf("shows %s\n", qUtf8Printable(proxy.text()));

#ifdef WITH_RECORDER
    for (const wisp::Line& line : wisp::recordedLines())
        std::printf("traced %s\n", line.text.c_str());
#endif
    return 0;
}
