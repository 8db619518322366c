// SPDX-License-Identifier: MIT
#include "mdi_area.h"

#include "recorder.h"

#include <QCloseEvent>
#include <QMetaMethod>
#include <QMetaProperty>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using namespace Support;
using Zentu::IMdiSubWindow;

namespace {

/// A document that may refuse to be closed, and counts changes of its title.
class Document : public IMdiSubWindow
{
public:
    using IMdiSubWindow::IMdiSubWindow;

    bool refuses = false;
    bool refusesAfterwards = false;
    int titleChanges = 0;
    QString titleAtTheChange;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (refuses) {
            event->ignore();
            return;
        }
        IMdiSubWindow::closeEvent(event);
        if (refusesAfterwards)
            event->ignore();
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::WindowTitleChange) {
            ++titleChanges;
            titleAtTheChange = shortTitle();
        }
        return IMdiSubWindow::event(event);
    }
};

/// An inner widget that refuses to be closed.
class Stubborn : public QWidget
{
public:
    std::function<void()> onClose;
    qsizetype linesAtTheClose = 0;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (onClose)
            onClose();
        event->ignore();
    }
};

QString window(const IMdiSubWindow* document, const char* title)
{
    return QLatin1String("MdiWindow(") + printed(static_cast<const void*>(document))
        + (*title ? QLatin1String(", \"") + QString::fromLatin1(title) + QLatin1String("\")")
                  : QStringLiteral(")"));
}

} // namespace

class MdiSubWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAPropertyAndASignal();
    void startsWithoutAreaAndTitle();
    void shortTitleFallsBackToTheWindowTitle();
    void titleThatIsShownAlreadyIsStoredAndSent();
    void changeOfTheShortTitleIsSentOnce();
    void closeIsTracedThenToldThenSignalled();
    void refusedCloseIsTracedOnly();
    void closeIsTracedBeforeItIsDecided();
    void closeThatIsIgnoredAfterwardsWasOne();
    void hasAParentAndTwoFields();
    void closedDocumentIsDeleted();
    void destructionIsTraced();
    void isPrintedWithItsTitle();
    void nullIsPrintedAndLeavesTheStreamSpaced();
    void currentChangedDoesNothing();
};

void MdiSubWindowTest::hasAPropertyAndASignal()
{
    const QMetaObject& meta = IMdiSubWindow::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::IMdiSubWindow");
    QCOMPARE(meta.superClass(), &QMdiSubWindow::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    QCOMPARE(signal.methodSignature(), QByteArray("closed()"));
    QCOMPARE(signal.methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 1);
    const QMetaProperty property = meta.property(meta.propertyOffset());
    QCOMPARE(property.name(), "shortTitle");
    QCOMPARE(property.type(), QVariant::String);
    QVERIFY(property.isReadable() && property.isWritable() && property.isDesignable()
        && property.isScriptable() && property.isStored());
    QVERIFY(!property.hasNotifySignal() && !property.isConstant() && !property.isFinal()
        && !property.isUser() && !property.isResettable());
}

void MdiSubWindowTest::startsWithoutAreaAndTitle()
{
    Recorder recorder;
    const Document document;
    QVERIFY(!document.ownerArea());
    QVERIFY(document.shortTitle().isEmpty());
    QVERIFY(document.testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(!document.parent());
    QVERIFY(recorder.isEmpty());
}

void MdiSubWindowTest::shortTitleFallsBackToTheWindowTitle()
{
    Document document;
    document.setWindowTitle(QStringLiteral("title"));
    QCOMPARE(document.shortTitle(), QStringLiteral("title"));
    document.setShortTitle(QStringLiteral("short"));
    QCOMPARE(document.shortTitle(), QStringLiteral("short"));
    QCOMPARE(document.windowTitle(), QStringLiteral("title"));
    document.setProperty("shortTitle", QString());
    QCOMPARE(document.property("shortTitle").toString(), QStringLiteral("title"));
}

void MdiSubWindowTest::titleThatIsShownAlreadyIsStoredAndSent()
{
    Document document;
    document.setWindowTitle(QStringLiteral("title"));
    document.titleChanges = 0;
    document.setShortTitle(QStringLiteral("title"));
    QCOMPARE(document.titleChanges, 1);
    document.setWindowTitle(QStringLiteral("other"));
    QCOMPARE(document.shortTitle(), QStringLiteral("title"));
}

void MdiSubWindowTest::changeOfTheShortTitleIsSentOnce()
{
    Document document;
    document.setShortTitle(QStringLiteral("short"));
    QCOMPARE(document.titleChanges, 1);
    QCOMPARE(document.titleAtTheChange, QStringLiteral("short"));
    document.setShortTitle(QStringLiteral("short"));
    QCOMPARE(document.titleChanges, 1);
    document.setShortTitle(QString());
    QCOMPARE(document.titleChanges, 2);
    document.setShortTitle(QString());
    QCOMPARE(document.titleChanges, 2);
}

void MdiSubWindowTest::closeIsTracedThenToldThenSignalled()
{
    Document document;
    document.setAttribute(Qt::WA_DeleteOnClose, false);
    document.setShortTitle(QStringLiteral("short"));
    document.show();
    Recorder recorder;
    qsizetype linesAtTheSignal = 0;
    connect(&document, &IMdiSubWindow::closed, this,
        [&] { linesAtTheSignal = recorder.entries().size(); });
    QVERIFY(document.close());
    QCOMPARE(linesAtTheSignal, 2);
    const QString printed = window(&document, "short");
    QCOMPARE(recorder.take(),
        QStringList({trace(printed + QLatin1String(" try to close ")),
            info(printed + QLatin1String(" closed"))}));
}

void MdiSubWindowTest::refusedCloseIsTracedOnly()
{
    Document document;
    QSignalSpy closed(&document, &IMdiSubWindow::closed);
    document.setWidget(new Stubborn);
    document.show();
    Recorder recorder;
    QVERIFY(!document.close());
    QCOMPARE(recorder.take(),
        QStringList(trace(window(&document, "") + QLatin1String(" try to close "))));
    document.refuses = true;
    QVERIFY(!document.close());
    QVERIFY(recorder.isEmpty());
    QCOMPARE(closed.count(), 0);
}

void MdiSubWindowTest::closeIsTracedBeforeItIsDecided()
{
    Document document;
    auto* const inner = new Stubborn;
    document.setWidget(inner);
    document.show();
    Recorder recorder;
    inner->onClose = [&] { inner->linesAtTheClose = recorder.entries().size(); };
    QVERIFY(!document.close());
    QCOMPARE(inner->linesAtTheClose, 1);
}

void MdiSubWindowTest::closeThatIsIgnoredAfterwardsWasOne()
{
    Document document;
    document.refusesAfterwards = true;
    document.show();
    QSignalSpy closed(&document, &IMdiSubWindow::closed);
    Recorder recorder;
    QVERIFY(!document.close());
    QCOMPARE(closed.count(), 1);
    QCOMPARE(recorder.take().size(), 2);
}

void MdiSubWindowTest::hasAParentAndTwoFields()
{
    QWidget parent;
    IMdiSubWindow child(&parent);
    QCOMPARE(child.parentWidget(), &parent);
    QCOMPARE(sizeof(IMdiSubWindow), sizeof(QMdiSubWindow) + sizeof(void*) + sizeof(QString));
}

void MdiSubWindowTest::closedDocumentIsDeleted()
{
    const QPointer<Document> document = new Document;
    document->show();
    document->close();
    QVERIFY(document);
    QTRY_VERIFY(!document);
}

void MdiSubWindowTest::destructionIsTraced()
{
    auto document = std::make_unique<Document>();
    document->setShortTitle(QStringLiteral("short"));
    const QString expected = trace(window(document.get(), "short") + QLatin1String(" destroying "));
    Recorder recorder;
    document.reset();
    QCOMPARE(recorder.take(), QStringList(expected));
}

void MdiSubWindowTest::isPrintedWithItsTitle()
{
    Document document;
    QString text;
    QDebug(&text) << &document;
    QCOMPARE(text, window(&document, "") + QLatin1Char(' '));
    document.setWindowTitle(QStringLiteral("a\"b"));
    text.clear();
    QDebug(&text).nospace() << &document << 1 << 2;
    QCOMPARE(text, window(&document, "a\\\"b") + QLatin1String(" 1 2 "));
}

void MdiSubWindowTest::nullIsPrintedAndLeavesTheStreamSpaced()
{
    const IMdiSubWindow* const none = nullptr;
    QString text;
    QDebug(&text) << none << 1 << 2;
    QCOMPARE(text, QStringLiteral("MdiWindow(0x0) 1 2 "));
    text.clear();
    QDebug(&text).nospace() << none << 1 << 2;
    QCOMPARE(text, QStringLiteral("MdiWindow(0x0) 1 2 "));
}

void MdiSubWindowTest::currentChangedDoesNothing()
{
    Document document;
    Recorder recorder;
    document.currentChanged(true);
    document.currentChanged(false);
    QVERIFY(recorder.isEmpty());
}

QTEST_MAIN(MdiSubWindowTest)
#include "tst_mdi_sub_window.moc"
