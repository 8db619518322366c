// SPDX-License-Identifier: MIT
#include "qlogstream.h"
#include "wisp_recorder.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

std::atomic<int> s_allocations{0};

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
    if (void* memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

class WispTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { wisp::clearRecordedLines(); }
    void cleanup() { wisp::setSink(nullptr); }

    void thereIsOneLogger();
    void linesAreRemembered();
    void newestTenThousandLinesAreRemembered();
    void clearingForgetsAllLines();
    void sinkReceivesEachLine();
    void sinkMayLogWithoutHearingItself();
    void sinkEndsWhenAnotherIsSet();
    void linesComeFromAllThreads();
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
