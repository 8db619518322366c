// SPDX-License-Identifier: MIT
#include "qlogstream.h"
#include "wisp_recorder.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

std::atomic<int> s_allocations{0};
std::atomic<std::size_t> s_bytesInUse{0};

void log(const QByteArray& text, int level = 1)
{
    wisp::logger::instance()->log(level, text.constData());
}

QList<QByteArray> recorded()
{
    QList<QByteArray> lines;
    for (const wisp::Line& line : wisp::recordedLines())
        lines.append(QByteArray::fromStdString(line.text));
    return lines;
}

// In the child process lines are also written before main and after it.
const bool s_isChild = qEnvironmentVariableIsSet("ZENTU_TEST_CHILD");

struct Early
{
    Early()
    {
        if (s_isChild)
            log("before main");
    }
    ~Early()
    {
        if (s_isChild)
            log("after main");
    }
} s_early;

struct Result
{
    int exitCode;
    QByteArray out;
    QByteArray error;
};

Result runChild(const QString& target)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZENTU_TEST_CHILD"), QStringLiteral("1"));
    environment.insert(QStringLiteral("WISP_TRACE"), target);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {});
    if (!child.waitForFinished())
        return {-1, {}, {}};
    return {child.exitCode(), child.readAllStandardOutput(), child.readAllStandardError()};
}

} // namespace

// Counted, to see what a line costs.
void* operator new(std::size_t size)
{
    ++s_allocations;
    void* const memory = std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    s_bytesInUse += malloc_usable_size(memory);
    return memory;
}

void operator delete(void* memory) noexcept
{
    s_bytesInUse -= malloc_usable_size(memory);
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    operator delete(memory);
}

class WispTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { wisp::clearRecordedLines(); }
    void cleanup()
    {
        wisp::setSink(nullptr);
        wisp::setFilter(nullptr);
    }

    void thereIsOneLogger();
    void linesAreRemembered();
    void newestTenThousandLinesAreRemembered();
    void clearingForgetsAllLines();
    void sinkReceivesEachLine();
    void sinkMayLogWithoutHearingItself();
    void sinkEndsWhenAnotherIsSet();
    void addedSinksAreCalledInOrder();
    void sinkMayAddAndRemoveSinks();
    void sinkThatThrowsIsCalledAgain();
    void longLinesAreBoundedTogether();
    void clearingReleasesTheMemory();
    void filterKeepsLinesFromEverybody();
    void linesComeFromAllThreads();
    void sinksChangeWhileOthersLog();
    void lineCostsNoAllocationOnceTheRingIsFull();
    void traceGoesToStandardError();
    void traceGoesToAFile();
    void fileThatCannotBeOpenedIsReportedOnce();
    void withoutTheVariableNothingIsWritten();
};

void WispTest::thereIsOneLogger()
{
    QVERIFY(wisp::logger::instance());
    QCOMPARE(wisp::logger::instance(), wisp::logger::instance());
}

void WispTest::linesAreRemembered()
{
    QByteArray text("one ");
    log(text);
    text.fill('x');
    log("\xe4", 7);
    const auto lines = wisp::recordedLines();
    QCOMPARE(lines.size(), std::size_t(2));
    QCOMPARE(lines[0].text, std::string("one "));
    QCOMPARE(lines[0].level, 1);
    QCOMPARE(lines[1].text, std::string("\xe4"));
    QCOMPARE(lines[1].level, 7);
}

void WispTest::newestTenThousandLinesAreRemembered()
{
    QCOMPARE(wisp::RecordedLines, std::size_t(10000));
    for (int i = 0; i < 10000; ++i)
        log(QByteArray::number(i));
    QCOMPARE(recorded().size(), 10000);
    QCOMPARE(recorded().first(), QByteArray("0"));
    for (int i = 10000; i < 12345; ++i)
        log(QByteArray::number(i));
    const QList<QByteArray> lines = recorded();
    QCOMPARE(lines.size(), 10000);
    for (int i = 0; i < 10000; ++i)
        QCOMPARE(lines.at(i), QByteArray::number(2345 + i));
}

void WispTest::clearingForgetsAllLines()
{
    for (int i = 0; i < 10001; ++i)
        log("x");
    wisp::clearRecordedLines();
    QVERIFY(wisp::recordedLines().empty());
    log("y");
    QCOMPARE(recorded(), QList<QByteArray>({"y"}));
}

void WispTest::sinkReceivesEachLine()
{
    QList<QByteArray> heard;
    wisp::setSink(
        [](int level, const char* text, void* context) {
            static_cast<QList<QByteArray>*>(context)->append(QByteArray::number(level) + text);
            // The line is remembered by now.
            QCOMPARE(recorded().last(), QByteArray(text));
        },
        &heard);
    log("a ");
    log("b", 3);
    QCOMPARE(heard, QList<QByteArray>({"1a ", "3b"}));
}

void WispTest::sinkMayLogWithoutHearingItself()
{
    int calls = 0;
    wisp::setSink(
        [](int, const char*, void* context) {
            ++*static_cast<int*>(context);
            log("from the sink");
        },
        &calls);
    log("a");
    log("b");
    QCOMPARE(calls, 2);
    QCOMPARE(recorded(), QList<QByteArray>({"a", "from the sink", "b", "from the sink"}));
}

void WispTest::sinkEndsWhenAnotherIsSet()
{
    int first = 0;
    int second = 0;
    const wisp::Sink count = [](int, const char*, void* context) { ++*static_cast<int*>(context); };
    wisp::setSink(count, &first);
    log("a");
    wisp::setSink(count, &second);
    log("b");
    wisp::setSink(nullptr);
    log("c");
    QCOMPARE(first, 1);
    QCOMPARE(second, 1);
}

/// Sinks that write down who heard what.
struct Listener
{
    static void hear(int level, const char* text, void* context)
    {
        const auto* self = static_cast<Listener*>(context);
        self->heard->append(self->name + QByteArray::number(level) + text);
        if (self->then)
            self->then();
    }

    QByteArray name;
    QList<QByteArray>* heard;
    std::function<void()> then;
};

void WispTest::addedSinksAreCalledInOrder()
{
    QList<QByteArray> heard;
    Listener a{"a", &heard, {}};
    Listener b{"b", &heard, {}};
    Listener set{"set", &heard, {}};
    const int first = wisp::addSink(&Listener::hear, &a);
    const int second = wisp::addSink(&Listener::hear, &b);
    const int again = wisp::addSink(&Listener::hear, &a);
    QVERIFY(first != 0 && second != 0 && first != second && second != again);
    wisp::setSink(&Listener::hear, &set);
    log("x", 3);
    QCOMPARE(heard, QList<QByteArray>({"set3x", "a3x", "b3x", "a3x"}));

    heard.clear();
    wisp::removeSink(first);
    wisp::removeSink(first);
    wisp::removeSink(0); // the one that was set has no number
    const int ofNone = wisp::addSink(nullptr);
    QVERIFY(ofNone != 0);
    wisp::removeSink(ofNone);
    wisp::removeSink(ofNone + 100);
    log("y");
    QCOMPARE(heard, QList<QByteArray>({"set1y", "b1y", "a1y"}));

    heard.clear();
    wisp::setSink(nullptr);
    wisp::removeSink(second);
    wisp::removeSink(again);
    log("z");
    QVERIFY(heard.isEmpty());
}

void WispTest::sinkMayAddAndRemoveSinks()
{
    QList<QByteArray> heard;
    int later = 0;
    int added = 0;
    int own = 0;
    Listener isNew{"new", &heard, {}};
    Listener isRemoved{"removed", &heard, {}};
    Listener last{"last", &heard, {}};
    Listener set{"set", &heard, {}};
    Listener changes{"changes", &heard, [&] {
                         wisp::removeSink(own);
                         wisp::removeSink(later);
                         added = wisp::addSink(&Listener::hear, &isNew);
                         wisp::setSink(&Listener::hear, &set);
                     }};
    own = wisp::addSink(&Listener::hear, &changes);
    later = wisp::addSink(&Listener::hear, &isRemoved);
    const int stays = wisp::addSink(&Listener::hear, &last);
    log("x");
    log("y");
    wisp::removeSink(added);
    wisp::removeSink(stays);
    QCOMPARE(heard, QList<QByteArray>({"changes1x", "last1x", "set1y", "last1y", "new1y"}));
}

void WispTest::sinkThatThrowsIsCalledAgain()
{
    QList<QByteArray> heard;
    Listener throws{"throws", &heard, [] { throw std::runtime_error("once"); }};
    const int number = wisp::addSink(&Listener::hear, &throws);
    QVERIFY_EXCEPTION_THROWN(log("x"), std::runtime_error);
    throws.then = {};
    log("y");
    wisp::removeSink(number);
    QCOMPARE(heard, QList<QByteArray>({"throws1x", "throws1y"}));
    QCOMPARE(recorded(), QList<QByteArray>({"x", "y"}));
}

void WispTest::longLinesAreBoundedTogether()
{
    const std::size_t before = s_bytesInUse;
    const std::size_t bound = wisp::RecordedCharacters + wisp::RecordedCharacters / 4;
    QByteArray line(1024 * 1024, 'x');
    for (char c = '0'; c < '0' + 60; ++c) {
        line[0] = c;
        log(line);
    }
    QVERIFY(s_bytesInUse - before < bound);
    QCOMPARE(recorded().size(), 16);
    QCOMPARE(recorded().first().at(0), char('0' + 44));
    QCOMPARE(recorded().last(), line);

    // Their slots do not stay large.
    for (int i = 0; i < 20000; ++i)
        log("short");
    QCOMPARE(recorded().size(), 10000);
    QVERIFY(s_bytesInUse - before < 1024 * 1024);

    log(QByteArray(int(wisp::RecordedCharacters) + 1, 'l'));
    QCOMPARE(recorded().size(), 1);
    log("next");
    QCOMPARE(recorded(), QList<QByteArray>({"next"}));
}

void WispTest::clearingReleasesTheMemory()
{
    const std::size_t before = s_bytesInUse;
    for (int i = 0; i < 10000; ++i)
        log(QByteArray(1000, 'x'));
    QVERIFY(s_bytesInUse - before > 9000000);
    wisp::clearRecordedLines();
    QVERIFY(s_bytesInUse - before < 1000000);
}

void WispTest::filterKeepsLinesFromEverybody()
{
    int heard = 0;
    wisp::setSink([](int, const char*, void* count) { ++*static_cast<int*>(count); }, &heard);
    const char* refused = "mine";
    wisp::setFilter(
        [](int level, const char* text, void* mine) {
            return level != 7 || std::strcmp(text, *static_cast<const char**>(mine)) != 0;
        },
        &refused);
    wisp::logger::instance()->log(7, "mine");
    wisp::logger::instance()->log(1, "mine");
    wisp::logger::instance()->log(7, "yours");
    QCOMPARE(heard, 2);
    QCOMPARE(wisp::recordedLines().size(), std::size_t(2));
    QCOMPARE(wisp::recordedLines().front().level, 1);
    QCOMPARE(wisp::recordedLines().back().text, std::string("yours"));

    wisp::setFilter(nullptr);
    wisp::logger::instance()->log(7, "mine");
    QCOMPARE(wisp::recordedLines().size(), std::size_t(3));
}

void WispTest::linesComeFromAllThreads()
{
    struct Overlap
    {
        std::atomic<int> inside{0};
        std::atomic<bool> happened{false};
        int calls = 0;
    } overlap;
    wisp::setSink(
        [](int, const char*, void* context) {
            auto* o = static_cast<Overlap*>(context);
            if (++o->inside > 1)
                o->happened = true;
            ++o->calls;
            --o->inside;
        },
        &overlap);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 1000; ++i)
                log(QByteArray::number(t));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QVERIFY(!overlap.happened);
    QCOMPARE(overlap.calls, 4000);
    const QList<QByteArray> lines = recorded();
    QCOMPARE(lines.size(), 4000);
    for (int t = 0; t < 4; ++t)
        QCOMPARE(lines.count(QByteArray::number(t)), 1000);
}

void WispTest::sinksChangeWhileOthersLog()
{
    std::atomic<bool> done{false};
    std::thread logs([&done] {
        while (!done)
            log("x");
    });
    const wisp::Sink count = [](int, const char*, void* context) { ++*static_cast<int*>(context); };
    for (int i = 0; i < 1000; ++i) {
        int calls = 0; // gone when the sink is removed
        const int number = wisp::addSink(count, &calls);
        while (i == 0 && recorded().size() < 10)
            std::this_thread::yield();
        wisp::removeSink(number);
    }
    done = true;
    logs.join();
}

void WispTest::lineCostsNoAllocationOnceTheRingIsFull()
{
    const QByteArray line(120, 'x');
    for (int i = 0; i < 10000; ++i)
        log(line);
    const int before = s_allocations;
    for (int i = 0; i < 10000; ++i)
        log(line);
    QCOMPARE(s_allocations.load(), before);
}

static void compareTrace(const QByteArray& text)
{
    const QList<QByteArray> lines = text.trimmed().split('\n');
    const QStringList expected = {
        QStringLiteral("before main"), QStringLiteral("in main "), QStringLiteral("after main")};
    QCOMPARE(lines.size(), expected.size());
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpression format(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{6}Z 1 \\d+ %1$")
                .arg(expected.at(i)));
        QVERIFY2(
            format.match(QString::fromLatin1(lines.at(i))).hasMatch(), lines.at(i).constData());
    }
}

void WispTest::traceGoesToStandardError()
{
    const Result result = runChild(QStringLiteral("stderr"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("3 lines\n"));
    compareTrace(result.error);
}

void WispTest::traceGoesToAFile()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("trace of a run.txt"));
    for (int run = 1; run <= 2; ++run) {
        const Result result = runChild(path);
        QCOMPARE(result.exitCode, 0);
        QVERIFY(result.error.isEmpty());
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    QCOMPARE(lines.size(), 6); // a second run adds to the file
    compareTrace(lines.mid(3).join('\n'));
}

void WispTest::fileThatCannotBeOpenedIsReportedOnce()
{
    const Result result = runChild(QStringLiteral("/nonexistent/trace"));
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("3 lines\n"));
    QCOMPARE(result.error,
        QByteArray("wisp: cannot write the trace to /nonexistent/trace: No such file or "
                   "directory\n"));
}

void WispTest::withoutTheVariableNothingIsWritten()
{
    const Result result = runChild(QString());
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.error.isEmpty());
}

int main(int argc, char* argv[])
{
    if (s_isChild) {
        log("in main ");
        // The third line is written when main has ended.
        std::printf("%zu lines\n", wisp::recordedLines().size() + 1);
        return 0;
    }
    QCoreApplication application(argc, argv);
    WispTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_wisp.moc"
