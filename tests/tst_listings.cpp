// SPDX-License-Identifier: MIT
// The listings that are no programs by themselves, with what they take for granted around them.
#include <ZentuKit/ZentuKit>

#include <QApplication>
#include <QLocale>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QTranslator>

class ListingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void readmeActivatesTheActionOfTheContext();
    void guideGivesTheActionToTheCurrentDocument();
    void guideGivesContextAndKeyOfADocument();
#ifdef WITH_TRANSLATIONS
    void guideShowsTheDialogInTheLanguage();
#endif
};

// The next listing begins with managers that know nothing of what has gone.
void ListingsTest::cleanup()
{
    delete Zentu::ContextManager::instance();
    delete Zentu::ProxyActionManager::instance();
}

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

void ListingsTest::guideGivesTheActionToTheCurrentDocument()
{
#include "listings/actions.inc"
    QMainWindow window;
    Zentu::followContexts(&window);
    auto* const copy = new Zentu::ProxyAction(&window);
    Zentu::ProxyActionManager::instance()->registerProxyAction(copy, QStringLiteral("edit.copy"));
    auto* const area = new Zentu::MdiArea;
    window.setCentralWidget(area);
    QStringList copied;
    for (const char* title : {"first", "second"}) {
        auto* const picture = new Picture(&copied);
        picture->setShortTitle(QLatin1String(title));
        area->addWindow(picture);
    }
    window.show();
    area->setCurrentSubWindow(area->subWindows().constFirst());
    copy->trigger();
    area->setCurrentSubWindow(area->subWindows().constLast());
    copy->trigger();
    QCOMPARE(copied, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

void ListingsTest::guideGivesContextAndKeyOfADocument()
{
#include "listings/documents.inc"
    QMainWindow window;
    auto* const area = new Zentu::MdiArea;
    window.setCentralWidget(area);
    QAction* const close = window.menuBar()->addMenu(QString())->addAction(QString());
    close->setShortcut(QKeySequence::Close);
    QSignalSpy closed(close, &QAction::triggered);
    area->addWindow(new Report);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto* const contexts = Zentu::ContextManager::instance();
    QCOMPARE(contexts->currentContexts(), QStringList(QStringLiteral("report")));
    QTest::keySequence(&window, QKeySequence::Close);
    QCOMPARE(closed.size(), 1);
    area->closeWindow(area->currentSubWindow());
    QTRY_COMPARE(contexts->currentContexts(), QStringList());
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
