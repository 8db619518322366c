// SPDX-License-Identifier: MIT
//
// Compares the parser with a model on made-up declarations and command lines.

#include "cmdline_parser.h"
#include "cmdline_texts.h"
#include "recorder.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Support;
using Text = CmdLineModel::Text;

namespace {

/// Makes up names, descriptions and command lines.
class Generator
{
public:
    explicit Generator(quint32 seed)
        : m_random(seed)
    {
    }

    int number(int limit) { return m_random.bounded(limit); }

    QString oneOf(const QStringList& texts)
    {
        return texts.at(number(static_cast<int>(texts.size())));
    }

    QString form()
    {
        static const QStringList names = {QStringLiteral("a"), QStringLiteral("b"),
            QStringLiteral("help"), QStringLiteral("A"), QString(), QStringLiteral("a=b"),
            QStringLiteral("\u00e4"), QStringLiteral("a-b"), QStringLiteral("out")};
        return QString(number(8) ? 1 + number(3) : 0, QLatin1Char('-')) + oneOf(names);
    }

    QStringList forms()
    {
        QStringList result;
        for (int count = number(12) ? 1 + number(3) : 0; count > 0; --count)
            result.append(form());
        return result;
    }

    QString valueName()
    {
        static const QStringList names = {QString(), QStringLiteral("file"),
            QStringLiteral("ValueList"), QStringLiteral("valuelist")};
        return oneOf(names);
    }

    QStringList arguments()
    {
        QStringList result;
        for (int count = number(10); count > 0; --count)
            result.append(number(3) ? form() : QStringLiteral("value %1").arg(number(9)));
        return result;
    }

    QString name() { return QString(number(20) ? number(30) : 60 + number(20), QLatin1Char('n')); }

    // Words of the lengths that matter, between blanks of all kinds.
    QString description(int width)
    {
        static const QStringList blanks = {QStringLiteral(" "), QStringLiteral("  "),
            QStringLiteral("\n"), QStringLiteral("\t"), QStringLiteral(" "),
            QStringLiteral("\u00a0"), QStringLiteral("\u3000"), QStringLiteral("\n\n"),
            QStringLiteral("\r")};
        QString result;
        for (int count = number(12); count > 0; --count) {
            const int length = number(4) ? number(15) : qMax(0, width - 3 + number(7));
            result += QString(length, QChar(u'a' + number(26)));
            result += number(3) ? QStringLiteral(" ") : oneOf(blanks);
        }
        return result;
    }

private:
    QRandomGenerator m_random;
};

quint32 seed()
{
    return qEnvironmentVariableIsSet("ZENTU_TEST_SEED")
        ? qEnvironmentVariable("ZENTU_TEST_SEED").toUInt()
        : 20261121;
}

} // namespace

class CmdLineRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qInfo("seed %u", seed()); }
    void parsesLikeTheModel();
    void explainsLikeTheModel();
};

void CmdLineRandomTest::parsesLikeTheModel()
{
    Generator make(seed());
    for (int round = 0; round < 10000; ++round) {
        Recorder recorder;
        Zentu::CmdLineParser parser(QStringLiteral("tool"));
        CmdLineModel model;
        for (int count = make.number(6); count > 0; --count) {
            const QStringList forms = make.forms();
            const QString valueName = make.valueName();
            parser.addOption(forms, QString(), valueName);
            const bool accepted = model.addOption(texts(forms), {}, text(valueName));
            QCOMPARE(recorder.take().size(), accepted ? 0 : 1);
        }
        for (int parse = 0; parse < 2; ++parse) {
            const QStringList args = make.arguments();
            const bool lists = make.number(2) == 1;
            const bool result = lists ? parser.parseB(args) : parser.parse(args);
            QCOMPARE(result, model.parse(texts(args), lists));
            QCOMPARE(parser.errorMessage(), string(model.errorMessage()));
            QCOMPARE(texts(parser.positionalArguments()), model.positional);
            for (int query = 0; query < 4; ++query) {
                const QString name = make.form();
                const CmdLineModel::Option* option = model.find(text(name));
                QCOMPARE(parser.isSet(name), option && option->isSet);
                QCOMPARE(parser.getValue(name), option ? string(option->value) : QString());
            }
            QCOMPARE(recorder.take().size(), 1);
        }
    }
}

void CmdLineRandomTest::explainsLikeTheModel()
{
    Generator make(seed() + 1);
    for (int round = 0; round < 10000; ++round) {
        Zentu::CmdLineParser parser(QStringLiteral("tool"));
        CmdLineModel model;
        model.appName = U"tool";
        const QString brief = make.number(2) ? make.description(20) : QString();
        parser.setBrief(brief);
        model.brief = text(brief);
        for (int count = make.number(4); count > 0; --count) {
            const QString name = make.name();
            const QString description = make.description(70 - static_cast<int>(name.size()));
            parser.addPositionalArgument(name, description);
            model.arguments.emplace_back(text(name), text(description));
        }
        for (int i = make.number(4); i > 0; --i) {
            const QStringList forms = {QStringLiteral("-o%1").arg(i),
                QStringLiteral("--option%1").arg(QString(i * 5, u'x'))};
            const QString description = make.description(45);
            const QString valueName = make.valueName();
            parser.addOption(forms, description, valueName);
            model.addOption(texts(forms), text(description), text(valueName));
        }
        QCOMPARE(parser.helpMessage(), string(model.helpMessage()));
    }
}

QTEST_GUILESS_MAIN(CmdLineRandomTest)
#include "tst_cmdline_random.moc"
