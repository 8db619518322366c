// SPDX-License-Identifier: MIT
#include "zentu_trace_test.h"

#include "context_mgr.h"
#include "event_mgr.h"
#include "ievent.h"
#include "proxy_act.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Zentu;

class TraceRecordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recordsItsStretchAlone();
    void postsAreCounted();
    void becameActiveBecauseOfAContext();
    void goldenFileBesideTheSource();
    void differenceIsReadable();
    void missingFileSaysHowToWriteIt();
    void variableWritesTheFileAnew();
    void formIsTheSameForBothVersionsOfQt();
    void addressesInNamesHaveNamesToo();
};

static void post(const char* type)
{
    EventManager::instance()->postEvent(
        new IEvent(QString::fromLatin1(type)), EventManager::Direct);
}

void TraceRecordingTest::recordsItsStretchAlone()
{
    post("before");
    QStringList lines;
    {
        const TraceRecording recording;
        post("inside");
        lines = recording.lines();
    }
    post("behind");
    QCOMPARE(lines,
        QStringList(QStringLiteral(
            "Zentu::EventManager(EventManager-1) post event IEvent(event, type = \"inside\") 1")));
}

void TraceRecordingTest::postsAreCounted()
{
    const TraceRecording recording;
    post("note \"a\"");
    post("note \"a\"");
    post("note");
    QCOMPARE(recording.postCount(QStringLiteral("note \"a\"")), 2);
    QCOMPARE(recording.postCount(QStringLiteral("note")), 1);
    QCOMPARE(recording.postCount(QStringLiteral("not")), 0);
    ZENTU_VERIFY_POSTED(recording, "note");
}

void TraceRecordingTest::becameActiveBecauseOfAContext()
{
    ContextManager contexts;
    ProxyAction proxy;
    ProxyAction other;
    QAction backend;
    QObject::connect(&contexts, &ContextManager::contextChanged, &proxy,
        [&] { proxy.setCurrentContext(contexts.currentContexts()); });
    const TraceRecording recording;
    proxy.addBackendAction(&backend, QStringLiteral("text"));
    contexts.addContext(QStringLiteral("image"));
    QVERIFY(!recording.becameActive(&proxy, QStringLiteral("image")));
    contexts.addContext(QStringLiteral("text"));
    ZENTU_VERIFY_BECAME_ACTIVE(recording, &proxy, "text");
    QVERIFY(!recording.becameActive(&proxy, QStringLiteral("image")));
    QVERIFY(!recording.becameActive(&other, QStringLiteral("text")));
}

void TraceRecordingTest::goldenFileBesideTheSource()
{
    ContextManager contexts;
    ProxyAction proxy;
    proxy.defaultProp()->setText(QStringLiteral("Save"));
    QAction backend(QStringLiteral("Save the text"));
    backend.setShortcut(QKeySequence(QStringLiteral("Ctrl+S")));
    backend.setCheckable(true);
    const TraceRecording recording;
    proxy.addBackendAction(&backend, QStringLiteral("text"));
    contexts.addContext(QStringLiteral("text"));
    proxy.setCurrentContext(contexts.currentContexts());
    proxy.removeBackendAction(&backend);
    post("saved");
    ZENTU_COMPARE_TRACE(recording, "golden/save.trace");
}

void TraceRecordingTest::differenceIsReadable()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.trace")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const auto line = [](const char* type) {
        return QByteArray("Zentu::EventManager(EventManager-1) post event IEvent(event, type = \"")
            + type + "\") 1";
    };
    file.write(line("a") + '\n' + line("b") + '\n' + line("c") + '\n');
    file.close();
    const TraceRecording recording;
    post("a");
    post("c");
    post("d");
    QCOMPARE(recording.differenceTo(file.fileName()),
        QString::fromLatin1(
            "the trace differs (- expected, + found):\n-2: " + line("b") + "\n+3: " + line("d")));
}

void TraceRecordingTest::missingFileSaysHowToWriteIt()
{
    const TraceRecording recording;
    const QString difference = recording.differenceTo(QStringLiteral("/nowhere/a.trace"));
    QVERIFY(difference.startsWith(QStringLiteral("cannot read /nowhere/a.trace: ")));
    QVERIFY(difference.endsWith(QStringLiteral("; ZENTU_UPDATE_TRACES=1 writes it")));
}

void TraceRecordingTest::variableWritesTheFileAnew()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("a.trace"));
    const TraceRecording recording;
    post("a");
    qputenv("ZENTU_UPDATE_TRACES", "1");
    const QString written = recording.differenceTo(file);
    qunsetenv("ZENTU_UPDATE_TRACES");
    QCOMPARE(written, QString());
    QCOMPARE(recording.differenceTo(file), QString());
    post("b");
    QVERIFY(!recording.differenceTo(file).isEmpty());
}

void TraceRecordingTest::formIsTheSameForBothVersionsOfQt()
{
    TraceNormalizer five;
    TraceNormalizer six;
    QCOMPARE(five.normalized("QAction(0x5 text=\"a)\" toolTip=\"b\" checked=true "
                             "shortcut=QKeySequence(\"Ctrl+S\") menuRole=NoRole visible=true) set "
                             "context (\"a\", \"QList(\") "),
        six.normalized("QAction(0x6 text=\"a)\" toolTip=\"b\" checked=true "
                       "shortcuts=QList(QKeySequence(\"Ctrl+S\")) menuRole=NoRole enabled=true "
                       "visible=true) set context QList(\"a\", \"QList(\") "));
    QCOMPARE(
        five.normalized("QAction(0x5 text=\"a)\") change active backend action to QAction(0x00)"),
        six.normalized(
            "QAction(0x6 text=\"a)\" enabled=false) change active backend action to QAction(0x0)"));
}

void TraceRecordingTest::addressesInNamesHaveNamesToo()
{
    TraceNormalizer normalizer;
    QCOMPARE(normalizer.normalized(
                 "Zentu::ContextManager(0x1) push context: \"document 0x55aedf6388c8\" "),
        std::string(
            "Zentu::ContextManager(ContextManager-1) push context: \"document address-1\""));
    QCOMPARE(normalizer.normalized("QTimer(0x55aedf6388c8, name = \"0x12, \\\"0x55aedf6388c9\") "),
        std::string("QTimer(address-1, name = \"0x12, \\\"address-2\")"));
}

QTEST_MAIN(TraceRecordingTest)
#include "tst_trace_recording.moc"
