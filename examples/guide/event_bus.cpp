// SPDX-License-Identifier: MIT
#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>

#include <QCoreApplication>

#include <cstdio>

class Printer : public Zentu::IEventHandler
{
public:
    explicit Printer(const char* name)
        : m_name(name)
    {
        subscribe(QStringLiteral("document.saved"));
    }

    void handleEvent(Zentu::IEvent* event) override
    {
        const QString path = event->data().value(QStringLiteral("path")).toString();
        std::printf("%s: %s %s\n", m_name, qUtf8Printable(event->type()), qUtf8Printable(path));
    }

private:
    const char* m_name;
};

static Zentu::IEvent* saved(const QString& path)
{
    auto* const event = new Zentu::IEvent(QStringLiteral("document.saved"));
    event->data().insert(QStringLiteral("path"), path);
    return event;
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    // The thread that asks first is the one in which queued events arrive.
    auto* const bus = Zentu::EventManager::instance();

    Printer older("older");
    Printer newer("newer");
    bus->postEvent(saved(QStringLiteral("a.txt")));
    bus->postEvent(saved(QStringLiteral("b.txt")), Zentu::EventManager::Queued);
    std::puts("posted");
    newer.setReceiving(false);
    QCoreApplication::processEvents();
    return 0;
}
