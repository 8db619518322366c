// SPDX-License-Identifier: MIT
//
// A program in one file, with a class for moc.

#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>

#include <QCoreApplication>

#include <cstdio>

class Reader : public QObject, public Zentu::IEventHandler
{
    Q_OBJECT

public:
    void handleEvent(Zentu::IEvent* event) override
    {
        std::printf("heard %s, %s\n", qUtf8Printable(event->type()), metaObject()->className());
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    Reader reader;
    reader.subscribe(QStringLiteral("greeting"));
    Zentu::EventManager::instance()->postEvent(new Zentu::IEvent(QStringLiteral("greeting")));
    return 0;
}

#include "main.moc"
