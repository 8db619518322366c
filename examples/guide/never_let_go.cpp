// SPDX-License-Identifier: MIT
#include <ZentuKit/EventManager>
#include <ZentuKit/IEvent>
#include <ZentuKit/IEventHandler>

#include <QCoreApplication>

class Title : public Zentu::IEventHandler
{
public:
    Title() { subscribe(QStringLiteral("document.opened")); }
    void handleEvent(Zentu::IEvent*) override { }
};

struct Window
{
    Title* title = new Title;
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    {
        Window window;
    }
    Zentu::EventManager::instance()->postEvent(
        new Zentu::IEvent(QStringLiteral("document.opened")));
    return 0;
}
