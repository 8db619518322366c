// SPDX-License-Identifier: MIT
//
// Hours of use in a minute: nothing may grow, nothing may be left behind.

#include "cmdline_parser.h"
#include "event_mgr.h"
#include "ievent_handler.h"
#include "mdi_area.h"
#include "proxy_act.h"
#include "qlogstream.h"
#include "wisp_recorder.h"

#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <malloc.h>
#include <unistd.h>

using namespace Zentu;

namespace {

std::atomic<qint64> s_liveEvents{0};

/// An event that is counted while it lives.
class CountedEvent : public IEvent
{
public:
    CountedEvent()
        : IEvent(QStringLiteral("soak"))
    {
        ++s_liveEvents;
    }
    ~CountedEvent() override { --s_liveEvents; }
};

/// A handler that counts what it gets.
class Counter : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { ++handled; }

    std::atomic<qint64> handled{0};
};

/// A document of some size.
class Document : public IMdiSubWindow
{
public:
    Document()
    {
        setWidget(new QPlainTextEdit(QStringLiteral("text")));
        setShortTitle(QStringLiteral("document"));
    }
};

qint64 residentBytes()
{
    malloc_trim(0);
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return -1;
    return statm.readAll().split(' ').at(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qsizetype openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries)
        .size();
}

void failOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    // The offscreen platform says of every window that it cannot hint at its size.
    const bool ofPlatform = text.startsWith(QLatin1String("This plugin does not support"));
    if ((type == QtWarningMsg && !ofPlatform) || type == QtCriticalMsg)
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
}

} // namespace

class SoakTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_previousHandler = qInstallMessageHandler(failOnWarning);
        // An IDE runs every test program there is and gives each a minute.
        if (!qEnvironmentVariableIsSet("ZENTU_SOAK")) {
            QTest::qSkip("It takes minutes: scripts/check --soak runs it.", __FILE__, __LINE__);
            return;
        }
        // The recorder keeps the memory of its longest lines; let it have that from the start.
        const QByteArray longLine(500, ' ');
        for (std::size_t i = 0; i < wisp::RecordedLines; ++i)
            wisp::logger::instance()->log(wisp::LogInfo, longLine.constData());
    }
    void cleanupTestCase() { qInstallMessageHandler(m_previousHandler); }

    void tenMillionEventsFromFourThreadsLeaveNothing();
    void tenThousandDocumentsLeaveNothing();
    void tenThousandSwitchesOfAThousandProxiesLeaveNothing();
    void aHundredThousandParsesLeaveNothing();

private:
    // Does the work in tenths and compares what is left after the first one and after the last.
    template <typename Tenth>
    void soak(Tenth tenth)
    {
        tenth();
        const qint64 memory = residentBytes();
        const auto descriptors = openDescriptors();
        for (int i = 1; i < 10; ++i)
            tenth();
        const qint64 growth = residentBytes() - memory;
        QVERIFY2(growth * 100 <= memory,
            qPrintable(QStringLiteral("%1 bytes more than %2").arg(growth).arg(memory)));
        QCOMPARE(openDescriptors(), descriptors);
    }

    QtMessageHandler m_previousHandler = nullptr;
};

void SoakTest::tenMillionEventsFromFourThreadsLeaveNothing()
{
    constexpr int Threads = 4;
    constexpr int EventsOfThread = 1000000 / Threads;
    // A poster waits while this many events are on their way, as a host's would.
    constexpr qint64 Backlog = 10000;
    const QString type = QStringLiteral("soak");
    EventManager* const bus = EventManager::instance();
    Counter resident;
    resident.subscribe(type);
    // Handlers that are in a delivery of another thread must live on, so these leave and return.
    Counter visitors[8];

    soak([&] {
        std::atomic<int> running{Threads};
        std::vector<std::thread> threads;
        for (int t = 0; t < Threads; ++t) {
            threads.emplace_back([&, t] {
                for (int i = 0; i < EventsOfThread; ++i) {
                    while (s_liveEvents > Backlog)
                        std::this_thread::yield();
                    // The blocking mode changes threads twice for each event, so it is rarer.
                    const int turn = (i + t) % 64;
                    bus->postEvent(new CountedEvent,
                        turn == 0 ? EventManager::BlockingQueued
                                  : static_cast<EventManager::PostMode>(turn % 3));
                }
                --running;
            });
        }
        while (running > 0 || s_liveEvents > 0) {
            for (Counter& visitor : visitors)
                visitor.subscribe(type);
            QCoreApplication::processEvents();
            for (Counter& visitor : visitors)
                visitor.unsubscribe(type);
            QCoreApplication::processEvents();
        }
        for (std::thread& thread : threads)
            thread.join();
    });
    QCOMPARE(s_liveEvents.load(), qint64(0));
    QCOMPARE(resident.handled.load(), qint64(10) * Threads * EventsOfThread);
    QCOMPARE(bus->getSubscribersFor(type), QList<IEventHandler*>({&resident}));
}

void SoakTest::tenThousandDocumentsLeaveNothing()
{
    MdiArea area;
    area.show();
    soak([&] {
        for (int i = 0; i < 100; ++i) {
            for (int j = 0; j < 10; ++j)
                area.addWindow(new Document);
            const QList<IMdiSubWindow*> documents = area.subWindows();
            for (IMdiSubWindow* document : documents)
                area.closeWindow(document);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    });
    QVERIFY(area.subWindows().isEmpty());
    QCOMPARE(area.findChild<QTabBar*>()->count(), 0);
}

void SoakTest::tenThousandSwitchesOfAThousandProxiesLeaveNothing()
{
    const QStringList contexts = {QStringLiteral("text"), QStringLiteral("image")};
    QObject owner;
    ProxyActionManager manager;
    for (int i = 0; i < 1000; ++i) {
        auto* proxy = new ProxyAction(&owner);
        for (const QString& context : contexts)
            proxy->addBackendAction(new QAction(context, &owner), context);
        manager.registerProxyAction(proxy, QString::number(i));
    }
    int turn = 0;
    soak([&] {
        for (int i = 0; i < 1000; ++i)
            manager.setCurrentContext({contexts.at(++turn % 2)});
    });
    QCOMPARE(manager.getProxyAction(QStringLiteral("999"))->text(), contexts.at(turn % 2));
}

void SoakTest::aHundredThousandParsesLeaveNothing()
{
    CmdLineParser parser(QStringLiteral("tool"));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addOption(QStringLiteral("--open"), QString(), QStringLiteral("ValueList"));
    QStringList args = {QStringLiteral("tool"), QStringLiteral("-z"), QStringLiteral("--open")};
    for (int i = 0; i < 20; ++i)
        args.append(QStringLiteral("file %1").arg(i));
    soak([&] {
        for (int i = 0; i < 5000; ++i) {
            QVERIFY(!parser.parse(args));
            QVERIFY(!parser.parseB(args));
        }
    });
    QCOMPARE(parser.errorMessage(), QStringLiteral("unknown option: -z "));
    QVERIFY(parser.helpMessage().contains(QLatin1String("--open <ValueList>")));
}

QTEST_MAIN(SoakTest)
#include "tst_soak.moc"
