// SPDX-License-Identifier: MIT
#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>

#include <QApplication>
#include <QMainWindow>
#include <QStatusBar>

// Shows what others say; it knows none of them.
class StatusLine : public Zentu::IEventHandler
{
public:
    explicit StatusLine(QStatusBar* bar)
        : m_bar(bar)
    {
        subscribe(QStringLiteral("notes.said"));
    }

    void handleEvent(Zentu::IEvent* event) override
    {
        m_bar->showMessage(event->data().value(QStringLiteral("text")).toString());
    }

private:
    QStatusBar* m_bar;
};

static void say(const QString& text)
{
    auto* const event = new Zentu::IEvent(QStringLiteral("notes.said"));
    event->data().insert(QStringLiteral("text"), text);
    Zentu::EventManager::instance()->postEvent(event);
}

class Window : public QMainWindow
{
public:
    Window()
    {
        setWindowTitle(QStringLiteral("Notes"));
        resize(640, 480);
        say(QStringLiteral("Welcome"));
    }

private:
    StatusLine m_statusLine{statusBar()};
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    // The thread that asks for the bus first is the one in which it delivers.
    Zentu::EventManager::instance();
    Window window;
    window.show();
    return QApplication::exec();
}
