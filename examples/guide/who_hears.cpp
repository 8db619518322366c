// SPDX-License-Identifier: MIT
#include <ZentuKit/EventManager>
#include <ZentuKit/IEvent>
#include <ZentuKit/IEventHandler>

#include <QCoreApplication>

class Title : public Zentu::IEventHandler
{
public:
    Title() { subscribe(QStringLiteral("document.opened")); }
    void handleEvent(Zentu::IEvent* event) override
    {
        text = event->data()[QStringLiteral("name")].toString();
    }
    QString text;
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    Title title;
    auto* const opened = new Zentu::IEvent(QStringLiteral("document.open"));
    opened->data()[QStringLiteral("name")] = QStringLiteral("notes.txt");
    Zentu::EventManager::instance()->postEvent(opened);
    return title.text.isEmpty() ? 1 : 0;
}
