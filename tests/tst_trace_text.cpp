// SPDX-License-Identifier: MIT
#include "ievent.h"
#include "ievent_handler.h"
#include "mdi_area.h"
#include "option_dlg.h"
#include "proxy_act.h"
#include "trace_p.h"

#include "wisp_recorder.h"

#include <QAction>
#include <QDialog>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>

using namespace Zentu;

namespace {

class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { }
};

class Page : public IOptionPage
{
public:
    QStringList category() const override { return path; }
    QWidget* pageWidget() override { return nullptr; }
    void initialize() override { }
    void finalize() override { }
    void apply() override { }

    QStringList path;
};

/// What is streamed, looked at through the pointer types that the library's statements have.
struct Subjects
{
    const QObject* object() const { return objects[kind % 3]; }
    const QWidget* widget() const { return widgets[kind % 3]; }

    QObject plain;
    QTimer timer;
    QWidget box;
    QDialog dialog;
    QAction action;
    Handler handler;
    IMdiSubWindow window;
    Page page;
    QString text;
    QStringList list;
    QByteArray bytes;
    int number = 0;
    int kind = 0;
    const QObject* objects[3] = {&plain, &timer, nullptr};
    const QWidget* widgets[3] = {&box, &dialog, nullptr};
};

constexpr int ItemKinds = 13;

template <typename T, typename = void>
constexpr bool isTaken = false;
template <typename T>
constexpr bool isTaken<T, std::void_t<decltype(std::declval<Trace&>() << std::declval<T>())>> =
    true;

static_assert(isTaken<int> && isTaken<const char*> && isTaken<QTimer*> && isTaken<QDialog*>);
// Converted they would not be what QDebug writes.
static_assert(!isTaken<bool> && !isTaken<char> && !isTaken<QChar> && !isTaken<unsigned>);
static_assert(!isTaken<qint64> && !isTaken<double> && !isTaken<Qt::AlignmentFlag>);
static_assert(!isTaken<QLatin1String> && !isTaken<void*>);

template <typename T>
const T* orNull(const T& item, int kind)
{
    return kind % 7 == 0 ? nullptr : &item;
}

template <typename Line>
void stream(Line& line, int item, const Subjects& s, const IEvent& event)
{
    switch (item) {
    case 0:
        line << s.object();
        break;
    case 1:
        line << s.widget();
        break;
    case 2:
        line << orNull(s.action, s.kind);
        break;
    case 3:
        line << orNull(event, s.kind);
        break;
    case 4:
        line << orNull(s.window, s.kind);
        break;
    case 5:
        line << orNull<IOptionPage>(s.page, s.kind);
        break;
    case 6:
        // Chosen by hand, as QDebug has no printer for handlers.
        if constexpr (std::is_same_v<Line, Trace>)
            line << static_cast<const IEventHandler*>(&s.handler);
        else
            line << static_cast<const void*>(&s.handler);
        break;
    case 7:
        line << s.text;
        break;
    case 8:
        line << s.list;
        break;
    case 9:
        line << s.number;
        break;
    case 10:
        line << s.bytes.constData();
        break;
    case 11:
        line << "a literal:";
        break;
    case 12:
        line << static_cast<const char*>(nullptr);
        break;
    default:
        Q_UNREACHABLE();
    }
}

// Mostly what hosts name things, and everything that printers treat in a way of their own: quotes,
// backslashes, digits after an escape, controls, Latin-1, the rest of the plane, half of a pair.
QString randomText(QRandomGenerator& random)
{
    static const ushort special[] = {'"', '\\', '\n', '\t', 0, 0x1b, 0x7f, 0x80, 0x9f, 0xa0, 0xad,
        0xe4, 0xff, 0x100, 0x20ac, 0x4e2d, 0x200b, 0xd83d, 0xde00, 0xfffe, '%', '\'', 'a', '7'};
    QString text;
    const bool calm = random.bounded(2) == 0;
    for (int length = random.bounded(12); length > 0; --length) {
        if (calm || random.bounded(2))
            text += QLatin1Char(static_cast<char>(random.bounded(0x20, 0x7f)));
        else if (random.bounded(4))
            text += QChar(special[random.bounded(int(std::size(special)))]);
        else
            text += QChar(ushort(random.bounded(0x10000)));
    }
    return text;
}

QStringList randomList(QRandomGenerator& random)
{
    QStringList list;
    for (int size = random.bounded(5); size > 0; --size)
        list.append(randomText(random));
    return list;
}

void change(QAction& action, QRandomGenerator& random)
{
    static const QString shortcuts[] = {QString(), QStringLiteral("F3"), QStringLiteral("Ctrl+C"),
        QStringLiteral("Alt+\""), QStringLiteral("Ctrl+K, Ctrl+\\"), QStringLiteral("Meta+\u00c4"),
        QStringLiteral("Strg+C")};
    action.setText(randomText(random));
    action.setToolTip(randomText(random));
    action.setCheckable(random.bounded(2));
    action.setChecked(random.bounded(2));
    action.setVisible(random.bounded(2));
    action.setEnabled(random.bounded(2));
    action.setObjectName(randomText(random));
    action.setShortcut(QKeySequence(shortcuts[random.bounded(int(std::size(shortcuts)))]));
    action.setMenuRole(QAction::MenuRole(random.bounded(int(QAction::QuitRole) + 2)));
}

void change(Subjects& s, QRandomGenerator& random)
{
    const int numbers[] = {0, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(),
        int(random.generate())};
    for (QObject* object : std::initializer_list<QObject*>{&s.plain, &s.timer, &s.box, &s.dialog})
        object->setObjectName(random.bounded(3) ? randomText(random) : QString());
    change(s.action, random);
    s.window.setShortTitle(randomText(random));
    s.window.setWindowTitle(randomText(random));
    s.page.path = randomList(random);
    s.text = randomText(random);
    s.list = randomList(random);
    s.bytes = random.bounded(2) ? randomText(random).toUtf8() : randomText(random).toLatin1();
    s.number = numbers[random.bounded(int(std::size(numbers)))];
    s.kind = random.bounded(1000);
}

void keepLine(int level, const char* text, void* context)
{
    *static_cast<wisp::Line*>(context) = {level, text};
}

/// The last line that was logged while it stands.
struct LastLine : wisp::Line
{
    LastLine() { wisp::setSink(keepLine, static_cast<wisp::Line*>(this)); }
    ~LastLine() { wisp::setSink(nullptr); }

    LastLine(const LastLine&) = delete;
    LastLine& operator=(const LastLine&) = delete;
};

} // namespace

class TraceTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsWhatQDebugWrites();
    void longLineIsComplete();
    void listsAndActionsShowAsInTheQtThatRuns();
    void pageShowsTheLineOfTheQtThatRuns();
};

void TraceTextTest::lineIsWhatQDebugWrites()
{
    const quint32 seed = qEnvironmentVariableIsSet("ZENTU_TEST_SEED")
        ? qEnvironmentVariable("ZENTU_TEST_SEED").toUInt()
        : 20260517;
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);

    Subjects subjects;
    const LastLine line;
    for (int i = 0; i < 10000; ++i) {
        change(subjects, random);
        const IEvent event(randomText(random));
        int items[6];
        const int count = random.bounded(int(std::size(items)) + 1);
        for (int& item : items)
            item = random.bounded(ItemKinds);

        QString expected;
        QDebug debug(&expected);
        {
            Trace trace;
            for (int k = 0; k < count; ++k) {
                stream(debug, items[k], subjects, event);
                stream(trace, items[k], subjects, event);
            }
        }
        // As the logger gets it: a line ends at its first NUL.
        if (line.text != expected.toLatin1().constData())
            QFAIL(qPrintable(QStringLiteral("line %1 is\n  %2\nand not\n  %3")
                                 .arg(i)
                                 .arg(QString::fromLatin1(line.text.c_str()), expected)));
        QCOMPARE(line.level, wisp::LogInfo);
    }
}

void TraceTextTest::longLineIsComplete()
{
    const QString name(5000, QLatin1Char('n'));
    const LastLine line;
    Trace() << "long:" << name << QStringList({name, name}) << 7;
    const QString quoted = QLatin1Char('"') + name + QLatin1Char('"');
    QString list;
    QDebug(&list).nospace() << QStringList({name, name});
    QCOMPARE(QString::fromStdString(line.text), QStringLiteral("long: %1 %2 7 ").arg(quoted, list));
}

void TraceTextTest::listsAndActionsShowAsInTheQtThatRuns()
{
    QAction copy(QStringLiteral("Copy"));
    copy.setShortcut(QKeySequence(QStringLiteral("Ctrl+C")));
    copy.setMenuRole(QAction::NoRole);
    const LastLine line;
    Trace() << QStringList({QStringLiteral("a"), QStringLiteral("b")}) << &copy;

    const QString expected = QT_VERSION_MAJOR == 5
        ? QStringLiteral("(\"a\", \"b\") QAction(0x%1 text=\"Copy\" toolTip=\"Copy\""
                         " shortcut=QKeySequence(\"Ctrl+C\") menuRole=NoRole visible=true) ")
        : QStringLiteral("QList(\"a\", \"b\") QAction(0x%1 text=\"Copy\" toolTip=\"Copy\""
                         " shortcuts=QList(QKeySequence(\"Ctrl+C\")) menuRole=NoRole"
                         " enabled=true visible=true) ");
    const QString address = QString::number(reinterpret_cast<quintptr>(&copy), 16);
    QCOMPARE(QString::fromStdString(line.text), expected.arg(address));
}

void TraceTextTest::pageShowsTheLineOfTheQtThatRuns()
{
    QAction grid(QStringLiteral("Grid"));
    grid.setCheckable(true);
    grid.setChecked(true);
    grid.setShortcut(QKeySequence(QStringLiteral("Ctrl+G")));
    ProxyAction proxy;
    proxy.addBackendAction(&grid, QStringLiteral("view"));
    proxy.setCurrentContext({QStringLiteral("view")});
    const LastLine line;
    proxy.setCurrentContext({QStringLiteral("view"), QStringLiteral("main")});

    QFile page(QStringLiteral(ZENTU_MESSAGES));
    QVERIFY(page.open(QIODevice::ReadOnly));
    QStringList shown = QString::fromUtf8(page.readAll()).split(QLatin1Char('\n'));
    shown = shown.filter(QRegularExpression(QStringLiteral("^    QAction")));
    QCOMPARE(shown.size(), 2);
    const QString address = QString::number(reinterpret_cast<quintptr>(&proxy), 16);
    QString expected = shown.at(QT_VERSION_MAJOR - 5).mid(4) + QLatin1Char(' ');
    expected.replace(QLatin1String("55d0c3a7"), address);
    QCOMPARE(QString::fromStdString(line.text), expected);
}

QTEST_MAIN(TraceTextTest)
#include "tst_trace_text.moc"
