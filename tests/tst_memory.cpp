// SPDX-License-Identifier: MIT
//
// What an object had of its own goes with it. The leak sanitizer says so too, but not in every
// build.

#include "action_mgr.h"
#include "cmdline_parser.h"
#include "context_mgr.h"
#include "event_mgr.h"
#include "file_watcher.h"
#include "ievent_handler.h"
#include "lambda_slot.h"
#include "mdi_area.h"
#include "object_pool.h"
#include "option_dlg.h"
#include "proxy_act.h"
#include "qlogstream.h"
#include "wisp_recorder.h"

#include <QTest>

#include <functional>

#include <malloc.h>

using namespace Zentu;

Q_DECLARE_METATYPE(std::function<void()>)

namespace {

class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { }
};

qint64 bytesInUse()
{
    return static_cast<qint64>(mallinfo2().uordblks);
}

} // namespace

class MemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void objectsTakeTheirMemoryAlong_data();
    void objectsTakeTheirMemoryAlong();
};

void MemoryTest::initTestCase()
{
    // The recorder keeps what its lines once took; let it have that from the start.
    const QByteArray line(300, ' ');
    for (std::size_t i = 0; i < wisp::RecordedLines; ++i)
        wisp::logger::instance()->log(wisp::LogInfo, line.constData());
}

void MemoryTest::objectsTakeTheirMemoryAlong_data()
{
    using Life = std::function<void()>;
    QTest::addColumn<Life>("life");
    QTest::newRow("ActionManager") << Life([] { ActionManager(); });
    QTest::newRow("CmdLineParser") << Life([] { CmdLineParser(QStringLiteral("tool")); });
    QTest::newRow("ContextManager") << Life([] { ContextManager(); });
    QTest::newRow("EventManager") << Life([] { EventManager(); });
    QTest::newRow("FileWatcher") << Life([] { FileWatcher(); });
    QTest::newRow("IEvent") << Life([] { IEvent(QStringLiteral("type")); });
    QTest::newRow("IEventHandler") << Life([] { Handler(); });
    QTest::newRow("IMdiSubWindow") << Life([] { IMdiSubWindow(); });
    QTest::newRow("LambdaSlotWrapper") << Life([] { LambdaSlotWrapper(nullptr, [] {}); });
    QTest::newRow("MdiArea") << Life([] { MdiArea(); });
    QTest::newRow("ObjectPool") << Life([] { ObjectPool(); });
    QTest::newRow("OptionDialog") << Life([] { OptionDialog({}); });
    QTest::newRow("ProxyAction") << Life([] { ProxyAction(); });
    QTest::newRow("ProxyActionManager") << Life([] { ProxyActionManager(); });
}

void MemoryTest::objectsTakeTheirMemoryAlong()
{
    QFETCH(std::function<void()>, life);
    constexpr int Lives = 1000;
    const auto live = [&] {
        for (int i = 0; i < Lives; ++i)
            life();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    };
    // Qt fills its caches in the first ones.
    for (int i = 0; i < 3; ++i)
        live();
    const qint64 before = bytesInUse();
    live();
    const qint64 growth = bytesInUse() - before;
    // The smallest private object takes more of each life than this.
    QVERIFY2(growth < Lives * 24, qPrintable(QStringLiteral("%1 bytes are left").arg(growth)));
}

QTEST_MAIN(MemoryTest)
#include "tst_memory.moc"
