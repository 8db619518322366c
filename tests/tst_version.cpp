// SPDX-License-Identifier: MIT
#include "zentu_global.h"

#include <QTest>

class VersionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsTheVersionOfTheProject();
    void numberAndTextAreTheSameVersion();
    void preprocessorComparesVersions();
};

void VersionTest::textIsTheVersionOfTheProject()
{
    QCOMPARE(QByteArray(ZENTU_VERSION_STR), QByteArray(PROJECT_VERSION));
}

void VersionTest::numberAndTextAreTheSameVersion()
{
    const QList<QByteArray> parts = QByteArray(ZENTU_VERSION_STR).split('.');
    QCOMPARE(parts.size(), 3);
    QCOMPARE(ZENTU_VERSION,
        ZENTU_VERSION_CHECK(parts.at(0).toInt(), parts.at(1).toInt(), parts.at(2).toInt()));
}

void VersionTest::preprocessorComparesVersions()
{
#if ZENTU_VERSION < ZENTU_VERSION_CHECK(1, 0, 0) || ZENTU_VERSION >= ZENTU_VERSION_CHECK(2, 0, 0)
    QFAIL("the versions compare wrongly");
#endif
    QCOMPARE(ZENTU_VERSION_CHECK(1, 2, 3), 0x010203);
    QVERIFY(ZENTU_VERSION_CHECK(1, 10, 0) > ZENTU_VERSION_CHECK(1, 9, 255));
}

QTEST_APPLESS_MAIN(VersionTest)
#include "tst_version.moc"
