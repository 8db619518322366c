// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <QTest>

#include <algorithm>

namespace Support {

/**
 * A made-up story that is told twice, once with the library and once with a model that does its
 * steps to the letter, and both times gives the same account.
 *
 * Every decision, also those made inside of callbacks, comes from one row of numbers. So the two
 * tellings make the same ones as long as both call back at the same moments, and their accounts
 * part where they do not:
 *
 * @code
 * void FamilyTest::callbacksEqualTheModel_data() { addSeeds(20); }
 *
 * void FamilyTest::callbacksEqualTheModel()
 * {
 *     QFETCH(quint32, seed);
 *     compareAccounts(tell<Library>(seed), tell<Model>(seed));
 * }
 * @endcode
 */
class Story
{
public:
    explicit Story(quint32 seed)
        : m_random(seed)
    {
    }
    virtual ~Story() = default;
    Q_DISABLE_COPY(Story)

    /// A number from 0 to @p end - 1.
    int below(int end) { return int(m_random.bounded(end)); }

    /// Whether that happens which happens once in so many times.
    bool onceIn(int times) { return below(times) == 0; }

    /// Adds to the account; addresses come out as the names that were given to them.
    void say(const QString& text)
    {
        m_account.append(QString(m_depth * 2, QLatin1Char(' ')) + named(text));
    }

    /// What an address is called from now on, until it is called otherwise.
    void call(const void* object, const QString& name)
    {
        m_names.insert(QString::number(quintptr(object), 16), name);
    }

    /// Something has called back: says so, and lets the story go on in there now and then.
    void calledBack(const QString& text)
    {
        say(text);
        if (m_depth == MostDepth)
            return;
        ++m_depth;
        for (int steps = std::max(0, below(4) - 1); steps > 0; --steps)
            step();
        --m_depth;
    }

    /// The story from its beginning to its end.
    QStringList tell(int steps)
    {
        for (; steps > 0; --steps)
            step();
        end();
        return m_account;
    }

protected:
    /// The next thing that happens.
    virtual void step() = 0;
    /// What is left is taken away.
    virtual void end() = 0;

    bool isCallback() const { return m_depth > 0; }

private:
    static constexpr int MostDepth = 4;

    QString named(const QString& text) const
    {
        const auto isDigit = [](QChar c) {
            return c.isDigit() || (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
        };
        QStringList parts = text.split(QLatin1String("0x"));
        for (int i = 1; i < parts.size(); ++i) {
            QString& part = parts[i];
            const int length =
                int(std::find_if_not(part.cbegin(), part.cend(), isDigit) - part.cbegin());
            part.replace(0, length, m_names.value(part.left(length), QStringLiteral("?")));
        }
        return parts.join(QString());
    }

    QRandomGenerator m_random;
    QStringList m_account;
    QHash<QString, QString> m_names;
    int m_depth = 0;
};

/// Rows of seeds for a test: those of every day, as many as ZENTU_TEST_SEEDS says, or the one of
/// ZENTU_TEST_SEED.
inline void addSeeds(quint32 everyDay)
{
    QTest::addColumn<quint32>("seed");
    if (qEnvironmentVariableIsSet("ZENTU_TEST_SEED")) {
        QTest::newRow("given") << qEnvironmentVariable("ZENTU_TEST_SEED").toUInt();
        return;
    }
    const quint32 count = qEnvironmentVariableIsSet("ZENTU_TEST_SEEDS")
        ? qEnvironmentVariable("ZENTU_TEST_SEEDS").toUInt()
        : everyDay;
    for (quint32 seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// Fails where the accounts part, with what led there.
inline void compareAccounts(const QStringList& library, const QStringList& model)
{
    const auto parting = std::mismatch(library.begin(), library.end(), model.begin(), model.end());
    if (parting.first == library.end() && parting.second == model.end())
        return;
    const int at = int(parting.first - library.begin());
    const QStringList before = library.mid(std::max(0, at - 12), std::min(at, 12));
    QFAIL(qPrintable(QStringLiteral("after %1 lines\n%2\n  library: %3\n  model:   %4")
                         .arg(at)
                         .arg(before.join(QLatin1Char('\n')), library.value(at), model.value(at))));
}

} // namespace Support
