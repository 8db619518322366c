// SPDX-License-Identifier: MIT
//
// Takes the pictures of the inspector: zentu-inspector-pictures FOLDER SUFFIX HOME. The programs of
// the three guides are what it looks at, and then the Workbench, page by page. The scale is Qt's
// QT_SCALE_FACTOR; "dark" in the suffix is the appearance.

#include "action_mgr.h"
#include "appearance.h"
#include "context_mgr.h"
#include "event_mgr.h"
#include "ievent.h"
#include "ievent_handler.h"
#include "main_window.h"
#include "own_lines.h"
#include "page.h"
#include "proxy_act.h"
#include "settings.h"
#include "window.h"
#include "wisp_recorder.h"
#include "zentu_host.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <array>

// The pictures show its name.
class Title : public Zentu::IEventHandler
{
public:
    Title() { subscribe(QStringLiteral("document.opened")); }
    void handleEvent(Zentu::IEvent*) override { }
};

namespace {

QString s_suffix;

/// The inspector beside what one function does.
class Inspected
{
public:
    Inspected()
        : m_session(m_listener)
        , m_window(m_session)
    {
        const Zentu::Inspect::OwnLines::Scope own;
        QCoreApplication::setApplicationName(QStringLiteral("my-program"));
        m_window.show();
    }
    ~Inspected() { wisp::clearRecordedLines(); }

    void resize(int width, int height) { m_window.resize(width, height); }

    void take(const char* page, const QString& id, const char* name)
    {
        m_session.takeLines();
        m_window.go(QString::fromLatin1(page), id);
        QTest::qWait(400);
        const QString file = QString::fromLatin1(name) + s_suffix + QStringLiteral(".png");
        const QImage picture = m_window.grab().toImage();
        const int smallest = 0;
        if (!picture.convertToFormat(QImage::Format_RGB888).save(file, "PNG", smallest))
            qFatal("cannot write %s", qPrintable(file));
    }

private:
    Zentu::Inspect::Listener m_listener;
    Zentu::Inspect::Session m_session;
    Zentu::Inspect::Window m_window;
};

void post(const QString& type)
{
    auto* const event = new Zentu::IEvent(type);
    event->data()[QStringLiteral("name")] = QStringLiteral("notes.txt");
    Zentu::EventManager::instance()->postEvent(event, Zentu::EventManager::Direct);
}

void takeWhyGrey()
{
    Inspected inspected;
    inspected.resize(860, 480);
    QObject host;
    Zentu::followContexts(&host);
    auto* const proxies = Zentu::ProxyActionManager::instance();
    Zentu::ProxyAction save;
    save.defaultProp()->setText(QStringLiteral("Save"));
    proxies->registerProxyAction(&save, QStringLiteral("file.save"));
    QAction saveText(QStringLiteral("Save the text"));
    save.addBackendAction(&saveText, QStringLiteral("text"));
    Zentu::ContextManager::instance()->addContext(QStringLiteral("txt"));
    inspected.take("action", QStringLiteral("file.save"), "why-grey");
    delete Zentu::ContextManager::instance();
    delete proxies;
}

void takeWhoHears()
{
    Inspected inspected;
    inspected.resize(860, 480);
    const Title title;
    post(QStringLiteral("document.open"));
    inspected.take("event", QStringLiteral("document.open"), "who-hears");
}

void takeNeverLetGo()
{
    Inspected inspected;
    inspected.resize(860, 480);
    const std::array<Title, 3> titles;
    post(QStringLiteral("document.opened"));
    inspected.take("event", QStringLiteral("document.opened"), "never-let-go");
}

QString writeText(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write("some\nlines\n") < 0)
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return file.fileName();
}

void takePages(const QString& home)
{
    Inspected inspected;
    inspected.take("line", {}, "inspector-lines-empty");
    inspected.take("event", {}, "inspector-events-empty");
    MainWindow window;
    window.show();
    window.open({writeText(home + QStringLiteral("/notes.txt")),
        writeText(home + QStringLiteral("/poem.txt"))});
    post(QStringLiteral("nobody.listens"));
    inspected.take("action", QStringLiteral("edit.undo"), "inspector-actions");
    inspected.take("event", QStringLiteral("nobody.listens"), "inspector-events");
    inspected.take("context", QStringLiteral("text"), "inspector-contexts");
    inspected.take("object", {}, "inspector-objects");
    inspected.take("line", QStringLiteral("40"), "inspector-lines");
    inspected.take("try", {}, "inspector-try");
}

} // namespace

int main(int argc, char* argv[])
{
    followScreenScale();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4)
        qFatal("usage: zentu-inspector-pictures FOLDER SUFFIX HOME");
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QDir::setCurrent(arguments.at(1));
    s_suffix = arguments.at(2);
    Settings::instance()->setAppearance(s_suffix.contains(QLatin1String("dark"))
            ? Settings::Appearance::Dark
            : Settings::Appearance::Light);
    followAppearanceSetting();
    takeWhyGrey();
    takeWhoHears();
    takeNeverLetGo();
    takePages(arguments.at(3));
    return 0;
}
