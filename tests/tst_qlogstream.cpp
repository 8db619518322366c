// SPDX-License-Identifier: MIT
#include "qlogstream.h"

#include "recorder.h"

#include <QRandomGenerator>
#include <QTest>
#include <QVariant>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

using namespace Support;

namespace {

// One item, streamed alike into a QDebug and into a line.
template <typename Stream>
void streamItem(Stream& stream, int kind, const QString& text, int number, QObject* object)
{
    const QByteArray utf8 = text.toUtf8();
    switch (kind) {
    case 0:
        stream << static_cast<const QObject*>(object);
        break;
    case 1:
        stream << object;
        break;
    case 2:
        stream << static_cast<const QObject*>(nullptr);
        break;
    case 3:
        stream << text;
        break;
    case 4:
        stream << QStringList({text, QStringLiteral("plain"), text});
        break;
    case 5:
        stream << QStringList();
        break;
    case 6:
        stream << number;
        break;
    case 7:
        stream << static_cast<const void*>(object);
        break;
    case 8:
        stream << static_cast<void*>(nullptr);
        break;
    case 9:
        stream << utf8.constData();
        break;
    case 10:
        stream << "a literal:";
        break;
    case 11:
        stream << (number % 2 == 0);
        break;
    case 12:
        stream << number / 7.0;
        break;
    case 13:
        stream << QVariant(text);
        break;
    case 14:
        stream << 'c';
        break;
    case 15:
        stream << QStringList({QStringLiteral("two"), QStringLiteral("plain ones")});
        break;
    case 16:
        stream << static_cast<const char*>(nullptr);
        break;
    case 17:
        stream << static_cast<quint64>(number) << QByteArray("bytes") << QLatin1String("latin");
        break;
    default:
        stream << QString();
        break;
    }
}

constexpr int ItemKinds = 19;

// A change of the stream's state; the same for both.
void changeState(QDebug& debug, int kind)
{
    switch (kind) {
    case 0:
        debug.nospace();
        break;
    case 1:
        debug.space();
        break;
    case 2:
        debug.noquote();
        break;
    case 3:
        debug.quote();
        break;
    case 4:
        debug.setVerbosity(QDebug::MaximumVerbosity);
        break;
    case 5:
        debug << Qt::hex;
        break;
    case 6:
        debug << Qt::dec;
        break;
    case 7:
        debug << qSetFieldWidth(12);
        break;
    case 8:
        debug << qSetPadChar(QLatin1Char('*'));
        break;
    case 9:
        debug << qSetFieldWidth(0);
        break;
    case 10:
        debug << Qt::uppercasedigits;
        break;
    case 11:
        debug << Qt::showbase;
        break;
    case 12:
        debug << Qt::reset;
        break;
    case 13:
        debug << [](QTextStream& stream) -> QTextStream& {
            stream.setLocale(QLocale(QLocale::German));
            return stream;
        };
        break;
    default:
        debug << [](QTextStream& stream) -> QTextStream& {
            stream.setLocale(QLocale::c());
            return stream;
        };
        break;
    }
}

constexpr int StateKinds = 15;

QString randomText(QRandomGenerator& random)
{
    static const QString parts[] = {QStringLiteral("plain"), QStringLiteral("\""),
        QStringLiteral("\\"), QStringLiteral("\n"), QStringLiteral("\x01"), QStringLiteral(" "),
        QStringLiteral("~"), QStringLiteral("\x7f"), QStringLiteral("\u00e4"),
        QStringLiteral("\u4e2d"), QString(QChar(0xd83d)), QStringLiteral("\U0001F600"),
        QStringLiteral("a"), QStringLiteral("9"), QString(QChar(0)), QStringLiteral("\u200b")};
    QString text;
    for (int count = random.bounded(5); count > 0; --count)
        text += parts[random.bounded(int(std::size(parts)))];
    return text;
}

/// Has constants that are declared and nowhere defined.
struct Undefined
{
    static const int Number = 12;
    static const char Letter = 'c';
};

/// Prints itself only where it can be changed.
struct Changing
{
    int count = 0;
};

QDebug operator<<(QDebug debug, Changing& item)
{
    return debug << ++item.count;
}

/// Prints itself as an array.
struct Element
{
    int number;
};

QDebug operator<<(QDebug debug, const Element (&items)[2])
{
    return debug << items[0].number + items[1].number;
}

/// Prints itself only once.
struct Moved
{
    std::unique_ptr<int> number;
};

QDebug operator<<(QDebug debug, Moved&& item)
{
    const std::unique_ptr<int> number = std::move(item.number);
    return debug << *number;
}

} // namespace

class QLogStreamTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTheMembersInOrder();
    void lineIsSentWhenTheStatementEnds();
    void lineEndsWithABlank();
    void emptyLineIsSentToo();
    void levelIsHandedOn();
    void objectComesWithItsName();
    void detailsAreFormattedByQt();
    void charactersOutsideLatin1BecomeQuestionMarks();
    void nullObjectIsPrinted();
    void whatHasNoReferenceIsTaken();
    void whatDebugTakesIsTakenAsItIs();
    void bothWaysOfStreamingWriteIntoOneLine();
    void debugWritesIntoTheBufferAtOnce();
    void streamingIntoTheObjectEqualsQDebug();
    void changedStateIsHonoured_data();
    void changedStateIsHonoured();
};

void QLogStreamTest::hasTheMembersInOrder()
{
    QVERIFY((std::is_same_v<decltype(wisp::qlogstream::level), int>));
    QVERIFY((std::is_same_v<decltype(wisp::qlogstream::buffer), QString>));
    QVERIFY((std::is_same_v<decltype(wisp::qlogstream::debug), QDebug>));
    wisp::qlogstream stream(3);
    const char* const begin = reinterpret_cast<const char*>(&stream);
    QCOMPARE(reinterpret_cast<const char*>(&stream.level), begin);
    QVERIFY(reinterpret_cast<const char*>(&stream.buffer) > begin);
    QVERIFY(static_cast<const void*>(&stream.debug) > static_cast<const void*>(&stream.buffer));
    QCOMPARE(sizeof stream, sizeof(void*) + sizeof(QString) + sizeof(QDebug));
    QVERIFY(!std::is_polymorphic_v<wisp::qlogstream>);
    QVERIFY(!std::is_copy_constructible_v<wisp::qlogstream>);
    QVERIFY(!std::is_copy_assignable_v<wisp::qlogstream>);
    QVERIFY((!std::is_convertible_v<int, wisp::qlogstream>));
    QCOMPARE(stream.level, 3);
    QVERIFY(stream.buffer.isEmpty());
    QVERIFY(stream.debug.autoInsertSpaces());
    QCOMPARE(wisp::LogInfo, 1);
}

void QLogStreamTest::lineIsSentWhenTheStatementEnds()
{
    Recorder recorder;
    {
        wisp::qlogstream stream(wisp::LogInfo);
        stream << "one"
               << "two";
        QVERIFY(recorder.isEmpty());
    }
    QCOMPARE(recorder.take(), QStringList(trace(QStringLiteral("one two "))));
}

void QLogStreamTest::lineEndsWithABlank()
{
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo) << static_cast<const QObject*>(this) << "clear all objects";
    wisp::qlogstream(wisp::LogInfo).debug << this << "clear all objects";
    const QString line =
        trace(printed(static_cast<const QObject*>(this)) + QLatin1String(" clear all objects "));
    QCOMPARE(recorder.take(), QStringList({line, line}));
}

void QLogStreamTest::emptyLineIsSentToo()
{
    Recorder recorder;
    wisp::qlogstream{wisp::LogInfo}; // NOLINT: the line is its life
    QCOMPARE(recorder.take(), QStringList(trace(QString())));
}

void QLogStreamTest::levelIsHandedOn()
{
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo) << "a";
    wisp::qlogstream(42) << "b";
    QCOMPARE(recorder.entries().at(0).level, 1);
    QCOMPARE(recorder.entries().at(1).level, 42);
}

void QLogStreamTest::objectComesWithItsName()
{
    QObject object;
    object.setObjectName(QStringLiteral("na\"me"));
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo) << &object << "add object:";
    QCOMPARE(recorder.take(),
        QStringList(trace(QLatin1String("QObject(") + printed(static_cast<const void*>(&object))
            + QLatin1String(", name = \"na\\\"me\") add object: "))));
}

void QLogStreamTest::detailsAreFormattedByQt()
{
    const QStringList program = {QStringLiteral("prog"), QStringLiteral("in.txt")};
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo)
        << "text:" << QStringLiteral("a\"b") << 12 << -3 << program << true;
    QCOMPARE(recorder.take(),
        QStringList(trace(
            QLatin1String("text: \"a\\\"b\" 12 -3 ") + quoted(program) + QLatin1String(" true "))));
}

void QLogStreamTest::charactersOutsideLatin1BecomeQuestionMarks()
{
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo) << QStringLiteral("\u00e4\u4e2d");
    QCOMPARE(recorder.take(), QStringList(trace(QStringLiteral("\"\u00e4?\" "))));
}

void QLogStreamTest::nullObjectIsPrinted()
{
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo) << "add:" << static_cast<const QObject*>(nullptr);
    wisp::qlogstream(wisp::LogInfo).debug << "add:" << static_cast<QObject*>(nullptr);
    const QString line = trace(QStringLiteral("add: QObject(0x0) "));
    QCOMPARE(recorder.take(), QStringList({line, line}));
}

void QLogStreamTest::whatHasNoReferenceIsTaken()
{
    struct Flags
    {
        unsigned bits : 3;
        bool bit : 1;
    };
    Flags flags = {5, true};
    const Flags constant = {6, false};
    Recorder recorder;
    wisp::qlogstream(wisp::LogInfo)
        << flags.bits << flags.bit << constant.bits << Undefined::Number << Undefined::Letter;
    QCOMPARE(recorder.take(), QStringList(trace(QStringLiteral("5 true 6 12 c "))));
}

void QLogStreamTest::whatDebugTakesIsTakenAsItIs()
{
    Recorder recorder;
    Changing changing;
    char array[] = "array";
    const char longer[16] = "chars";
    const Element elements[] = {{30}, {12}};
    const auto streamAll = [&](auto&& stream) {
        stream << changing << changing << Moved{std::make_unique<int>(7)} << array << longer
               << elements << nullptr << Qt::AlignLeft << Qt::hex << 255;
    };
    streamAll(wisp::qlogstream(wisp::LogInfo));
    streamAll(wisp::qlogstream(wisp::LogInfo).debug);
    const QStringList lines = recorder.take();
    QVERIFY2(lines.first().startsWith(QLatin1String("trace|1 2 7 array chars 42 (nullptr) ")),
        qPrintable(lines.first()));
    QCOMPARE(lines.last(),
        QString(lines.first()).replace(QLatin1String("|1 2 "), QLatin1String("|3 4 ")));
}

void QLogStreamTest::bothWaysOfStreamingWriteIntoOneLine()
{
    Recorder recorder;
    {
        wisp::qlogstream stream(wisp::LogInfo);
        stream << "a";
        stream.debug << "b" << 1;
        stream << QStringLiteral("c") << 2;
        stream.debug.nospace() << "d";
        stream << "e" << QStringLiteral("f");
    }
    QCOMPARE(recorder.take(), QStringList(trace(QStringLiteral("a b 1 \"c\" 2 de\"f\""))));
}

void QLogStreamTest::debugWritesIntoTheBufferAtOnce()
{
    Recorder recorder;
    wisp::qlogstream stream(wisp::LogInfo);
    stream.debug << "a";
    QCOMPARE(stream.buffer, QStringLiteral("a "));
    stream << "b";
    QCOMPARE(stream.buffer, QStringLiteral("a b "));
}

void QLogStreamTest::streamingIntoTheObjectEqualsQDebug()
{
    const quint32 seed = qEnvironmentVariableIsSet("ZENTU_TEST_SEED")
        ? qEnvironmentVariable("ZENTU_TEST_SEED").toUInt()
        : 20261121;
    qInfo("seed %u", seed);
    QRandomGenerator random(seed);
    Recorder recorder;
    QObject object;
    for (int line = 0; line < 5000; ++line) {
        object.setObjectName(random.bounded(2) ? QString() : randomText(random));
        QString expected;
        QDebug debug(&expected);
        wisp::qlogstream stream(wisp::LogInfo);
        const bool calm = random.bounded(2) == 0;
        for (int item = 0; item < 6; ++item) {
            if (!calm && random.bounded(3) == 0) {
                const int state = random.bounded(StateKinds);
                changeState(debug, state);
                changeState(stream.debug, state);
            }
            const int kind = random.bounded(ItemKinds);
            const QString text = randomText(random);
            const int number = random.bounded(-100000, 100000);
            streamItem(debug, kind, text, number, &object);
            streamItem(stream, kind, text, number, &object);
            if (stream.buffer != expected)
                QCOMPARE(stream.buffer, expected);
        }
        recorder.clear();
    }
}

void QLogStreamTest::changedStateIsHonoured_data()
{
    QTest::addColumn<int>("state");
    QTest::addColumn<int>("kind");
    for (int state = 0; state < StateKinds; ++state) {
        for (int kind = 0; kind < ItemKinds; ++kind)
            QTest::addRow("state %d, item %d", state, kind) << state << kind;
    }
}

void QLogStreamTest::changedStateIsHonoured()
{
    QFETCH(int, state);
    QFETCH(int, kind);
    Recorder recorder;
    QObject object;
    object.setObjectName(QStringLiteral("name"));
    QString expected;
    QDebug debug(&expected);
    wisp::qlogstream stream(wisp::LogInfo);
    const auto both = [&](const std::function<void(QDebug&)>& change) {
        change(debug);
        change(stream.debug);
    };
    both([&](QDebug& each) { changeState(each, state); });
    for (int number : {255, -255, 0, 1234567, -1}) {
        streamItem(debug, kind, QStringLiteral("text"), number, &object);
        streamItem(stream, kind, QStringLiteral("text"), number, &object);
    }
    QCOMPARE(stream.buffer, expected);
}

QTEST_GUILESS_MAIN(QLogStreamTest)
#include "tst_qlogstream.moc"
