// SPDX-License-Identifier: MIT
// The listings that are no programs by themselves, with what they take for granted around them.
#include <ZentuKit/ZentuKit>

#include <QApplication>
#include <QLocale>
#include <QMenu>
#include <QTest>
#include <QTranslator>

class ListingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readmeActivatesTheActionOfTheContext();
#ifdef WITH_TRANSLATIONS
    void guideShowsTheDialogInTheLanguage();
#endif
};

void ListingsTest::readmeActivatesTheActionOfTheContext()
{
    QWidget parent;
    QMenu menu;
    QAction ofText(nullptr);
    QAction ofPicture(nullptr);
    QWidget* const window = &parent;
    QMenu* const editMenu = &menu;
    QAction* const copyText = &ofText;
    QAction* const copyPicture = &ofPicture;
    int copiedTexts = 0;
    connect(copyText, &QAction::triggered, this, [&] { ++copiedTexts; });
#include "listings/README.inc"
    QCOMPARE(menu.actions(), QList<QAction*>({copy}));
    QCOMPARE(copy->text(), QStringLiteral("&Copy"));
    QCOMPARE(copy->shortcut(), QKeySequence(QKeySequence::Copy));
    QVERIFY(copy->isEnabled());
    copy->trigger();
    QCOMPARE(copiedTexts, 1);
    Zentu::ContextManager::instance()->removeContext(QStringLiteral("text"));
    QVERIFY(!copy->isEnabled());
}

#ifdef WITH_TRANSLATIONS
void ListingsTest::guideShowsTheDialogInTheLanguage()
{
    QLocale::setDefault(QLocale(QStringLiteral("de")));
#include "listings/options.inc"
    QCOMPARE(Zentu::OptionDialog({}).windowTitle(), QStringLiteral("Optionen"));
}
#endif

QTEST_MAIN(ListingsTest)
#include "tst_listings.moc"
