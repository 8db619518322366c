// SPDX-License-Identifier: MIT
//
// The Workbench with 1,000 events a second, of which each has a value and is heard by three:
// zentu-inspected SECONDS [PAGE]. It says how many milliseconds of the processor the whole process
// took in each second, with that page of the inspector in front, if there is one.

#include "event_mgr.h"
#include "ievent.h"
#include "ievent_handler.h"
#include "main_window.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/resource.h>

#include <array>
#include <cstdio>

namespace {

class Hearing : public Zentu::IEventHandler
{
public:
    Hearing() { subscribe(QStringLiteral("bench.tick")); }
    void handleEvent(Zentu::IEvent* event) override
    {
        sum += event->data().value(QStringLiteral("number")).toLongLong();
    }

    qint64 sum = 0;
};

/// Posts what is due, every millisecond.
class Posting : public QObject
{
public:
    Posting()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &Posting::post);
        m_clock.start();
        m_timer.start(1);
    }

    qint64 posts() const { return m_posts; }

private:
    void post()
    {
        for (; m_posts < m_clock.elapsed(); ++m_posts) {
            auto* const event = new Zentu::IEvent(QStringLiteral("bench.tick"));
            event->data().insert(QStringLiteral("number"), m_posts);
            Zentu::EventManager::instance()->postEvent(event);
        }
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_posts = 0;
};

/// Of all threads, in milliseconds.
double processorTime()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

void rest(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Where there is an inspector.
void showPage(int page)
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* const window : windows) {
        if (window->objectName() == QLatin1String("zentu_inspector"))
            window->findChild<QTabBar*>()->setCurrentIndex(page);
    }
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const int seconds = arguments.value(1).toInt();
    if (seconds <= 0)
        qFatal("usage: zentu-inspected SECONDS [PAGE]");
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    MainWindow window;
    window.show();
    const std::array<Hearing, 3> hearing;
    const Posting posting;
    rest(1000);
    showPage(arguments.value(2).toInt());
    rest(1000);

    const double before = processorTime();
    const qint64 posted = posting.posts();
    rest(1000 * seconds);
    std::printf("%.1f\n", (processorTime() - before) / seconds);
    // A machine that cannot keep pace would measure something else.
    return posting.posts() - posted > 990 * seconds && hearing.front().sum > 0 ? 0 : 1;
}
