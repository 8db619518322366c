// SPDX-License-Identifier: MIT
#include "option_dlg.h"

#include <QTest>
#include <QTranslator>

using Zentu::OptionDialog;

class TranslationsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dialogIsTitledInTheLanguage_data();
    void dialogIsTitledInTheLanguage();
    void dialogIsTitledInEnglishOtherwise();
};

void TranslationsTest::dialogIsTitledInTheLanguage_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("de") << QStringLiteral("Optionen");
    QTest::newRow("es") << QStringLiteral("Opciones");
    QTest::newRow("fr") << QStringLiteral("Options");
    QTest::newRow("it") << QStringLiteral("Opzioni");
    QTest::newRow("ja") << QStringLiteral("\u30aa\u30d7\u30b7\u30e7\u30f3");
    QTest::newRow("ko") << QStringLiteral("\uc635\uc158");
    QTest::newRow("pl") << QStringLiteral("Opcje");
    QTest::newRow("pt") << QStringLiteral("Op\u00e7\u00f5es");
    QTest::newRow("ru") << QStringLiteral("\u041f\u0430\u0440\u0430\u043c\u0435\u0442\u0440\u044b");
    QTest::newRow("zh") << QStringLiteral("\u9009\u9879");
}

void TranslationsTest::dialogIsTitledInTheLanguage()
{
    QFETCH(QString, title);
    QTranslator translator;
    QVERIFY(translator.load(QLocale(QLatin1String(QTest::currentDataTag())),
        QStringLiteral("zentukit"), QStringLiteral("_"),
        QCoreApplication::applicationDirPath()
            + QStringLiteral("/../share/ZentuKit/translations")));
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(OptionDialog({}).windowTitle(), title);
}

void TranslationsTest::dialogIsTitledInEnglishOtherwise()
{
    QCOMPARE(OptionDialog({}).windowTitle(), QStringLiteral("Options"));
}

QTEST_MAIN(TranslationsTest)
#include "tst_translations.moc"
