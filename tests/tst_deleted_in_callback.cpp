// SPDX-License-Identifier: MIT
#include "file_watcher.h"
#include "lambda_slot.h"
#include "mdi_area.h"
#include "option_dlg.h"
#include "proxy_act.h"
#include "zentu_host.h"

#include "recorder.h"

#include <QDialogButtonBox>
#include <QEventLoop>
#include <QMdiArea>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>
#include <memory>
#include <utility>

using namespace Support;
using namespace Zentu;

namespace {

const QString A = QStringLiteral("A");

// That of the case that runs.
Recorder* recorder = nullptr;

/// A callback, and the object that is deleted in it.
struct Case
{
    const char* name;
    std::function<void()> run;
};

// Calls a function at the signal, once.
template <typename Sender, typename Signal>
void once(Sender* sender, Signal signal, const std::function<void()>& call)
{
    auto* const context = new QObject(sender);
    QObject::connect(sender, signal, context, [=] {
        const std::function<void()> held = call;
        delete context;
        held();
    });
}

void proxyDeletedInItsSignals(const std::function<void(ProxyAction*, QAction*)>& connect)
{
    QAction backend(QStringLiteral("backend"));
    backend.setCheckable(true);
    backend.setChecked(true);
    const QPointer<ProxyAction> proxy = new ProxyAction;
    proxy->addBackendAction(&backend, A);
    connect(proxy, &backend);
    proxy->setCurrentContext({A});
    QVERIFY(!proxy);
    backend.setText(QStringLiteral("alone"));
}

/// An action that calls a function at each connection and disconnection.
template <typename Action>
class Telling : public Action
{
public:
    using Tell = std::function<void(const QMetaMethod& signal)>;

    explicit Telling(Tell tell)
        : Action(nullptr)
        , m_tell(std::move(tell))
    {
    }

protected:
    void connectNotify(const QMetaMethod& signal) override { m_tell(signal); }
    void disconnectNotify(const QMetaMethod& signal) override { m_tell(signal); }

private:
    Tell m_tell;
};

// Deletes a proxy while a backend that it has is disconnected.
void proxyDeletedInARemoval(const std::function<void(ProxyAction*, QAction*)>& remove)
{
    auto* const proxy = new ProxyAction;
    const QPointer<ProxyAction> alive = proxy;
    bool isRemoving = false;
    Telling<QAction> backend([&](const QMetaMethod&) {
        if (std::exchange(isRemoving, false))
            delete proxy;
    });
    proxy->addBackendAction(&backend, A);
    proxy->setCurrentContext({A});
    isRemoving = true;
    remove(proxy, &backend);
    QVERIFY(!alive);
}

/// A document that calls functions, once each.
class Document : public IMdiSubWindow
{
public:
    void currentChanged(bool current) override
    {
        ++told;
        if (const auto call = std::exchange(current ? onCurrent : onNotCurrent, {}))
            call();
    }

    int told = 0;
    std::function<void()> onCurrent;
    std::function<void()> onNotCurrent;
    std::function<void()> onParentChange;
    std::function<void()> onStateWatched;

protected:
    bool event(QEvent* event) override
    {
        const bool isHandled = IMdiSubWindow::event(event);
        if (event->type() == QEvent::ParentChange) {
            if (const auto call = std::exchange(onParentChange, {}))
                call();
        }
        return isHandled;
    }

    // The last thing that the inner area does as it takes a document.
    void connectNotify(const QMetaMethod& signal) override
    {
        if (signal != QMetaMethod::fromSignal(&QMdiSubWindow::windowStateChanged))
            return;
        if (const auto call = std::exchange(onStateWatched, {}))
            call();
    }
};

/// An area with the documents a and b, of which b is current.
struct Desk
{
    Desk()
    {
        area->addWindow(a);
        area->addWindow(b);
        area->show();
        inner = area->findChild<QMdiArea*>();
        tabs = area->findChild<QTabBar*>();
    }
    ~Desk() { delete area; }
    Q_DISABLE_COPY(Desk)

    // Qt itself reads a document that is deleted while it is activated, so the area hears of it
    // later.
    void activate(IMdiSubWindow* document) const
    {
        QVERIFY(QTest::qWaitForWindowActive(area));
        {
            const QSignalBlocker blocker(inner);
            inner->setActiveSubWindow(document);
        }
        QVERIFY(QMetaObject::invokeMethod(
            inner, "subWindowActivated", Q_ARG(QMdiSubWindow*, document)));
    }

    // Deletes the area; Qt goes on in what it is made of.
    std::function<void()> deletion()
    {
        return [this] {
            recorder->clear();
            delete area;
            QCOMPARE(recorder->take(), QStringList());
            QVERIFY(a && b && inner && tabs);
        };
    }
    void clickFirstTab() const
    {
        QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->tabRect(0).center());
    }
    // The document that is left deletes the area, and hears nothing more; the other one nothing.
    void checkLeavingDocument(const std::function<void()>& deletion)
    {
        a->told = 0;
        b->told = 0;
        b->onNotCurrent = deletion;
        clickFirstTab();
        QCOMPARE(b->told, 1);
        QCOMPARE(a->told, 0);
        checkEnd();
    }
    void checkEnd() const
    {
        QVERIFY(!area);
        QVERIFY(a && b && inner && tabs);
        QVERIFY(!a->ownerArea() && !b->ownerArea());
        QVERIFY(!inner->isVisible() && !tabs->isVisible());
        QTRY_VERIFY(!inner && !tabs);
        QVERIFY(!a && !b);
    }

    QPointer<MdiArea> area = new MdiArea;
    QPointer<Document> a = new Document;
    QPointer<Document> b = new Document;
    QPointer<QMdiArea> inner;
    QPointer<QTabBar> tabs;
};

/// A page that calls functions.
class Page : public IOptionPage
{
public:
    explicit Page(const char* name)
        : m_name(QString::fromLatin1(name))
    {
    }

    QStringList category() const override { return {m_name}; }
    QWidget* pageWidget() override
    {
        call(onWidget);
        return onWidget ? nullptr : new QWidget;
    }
    void initialize() override { call(onInitialize); }
    void finalize() override { call(onFinalize); }
    void apply() override { call(onApply); }

    std::function<void()> onWidget;
    std::function<void()> onInitialize;
    std::function<void()> onFinalize;
    std::function<void()> onApply;
    int calls = 0;

private:
    void call(const std::function<void()>& function)
    {
        ++calls;
        if (function)
            function();
    }

    QString m_name;
};

/// A dialog with two pages, of which the first one is shown.
struct Preferences
{
    Preferences() { dialog->show(); }

    std::function<void()> deletion()
    {
        return [this] { delete dialog; };
    }
    void press(QDialogButtonBox::StandardButton button) const
    {
        dialog->findChild<QDialogButtonBox*>()->button(button)->click();
    }
    // Qt itself reads what is deleted while an item is selected, so the dialog hears of it later.
    void selectSecond() const
    {
        auto* const tree = dialog->findChild<QTreeWidget*>();
        {
            const QSignalBlocker blocker(tree);
            tree->setCurrentItem(tree->topLevelItem(1));
        }
        QVERIFY(QMetaObject::invokeMethod(tree, "itemSelectionChanged"));
    }
    void checkNothingElseWasCalled(int ofFirst, int ofSecond) const
    {
        QVERIFY(!dialog);
        QCOMPARE(first.calls, ofFirst);
        QCOMPARE(second.calls, ofSecond);
    }

    Page first{"first"};
    Page second{"second"};
    QPointer<OptionDialog> dialog = new OptionDialog({&first, &second});
};

const Case Cases[] = {
    {"proxy in its changed()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction*) {
                once(proxy, &QAction::changed, [=] { delete proxy; });
            });
        }},
    {"proxy in its toggled()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction*) {
                once(proxy, &QAction::toggled, [=] { delete proxy; });
            });
        }},
    {"proxy and backend's successor in the proxy's changed()",
        [] {
            proxyDeletedInItsSignals([](ProxyAction* proxy, QAction* backend) {
                once(proxy, &QAction::changed, [=] {
                    proxy->removeBackendAction(backend);
                    delete proxy;
                });
            });
        }},
    {"proxy in its backend's changed()",
        [] {
            QAction backend;
            const QPointer<ProxyAction> proxy = new ProxyAction;
            proxy->addBackendAction(&backend, A);
            proxy->setCurrentContext({A});
            once(proxy.data(), &QAction::changed, [=] { delete proxy; });
            backend.setText(QStringLiteral("changed"));
            QVERIFY(!proxy);
        }},
    {"proxy in the changed() of its default look",
        [] {
            const QPointer<ProxyAction> proxy = new ProxyAction;
            once(proxy.data(), &QAction::changed, [=] { proxy->deleteLater(); });
            proxy->defaultProp()->setText(QStringLiteral("changed"));
            QTRY_VERIFY(!proxy);
        }},
    {"proxy while a backend is connected",
        [] {
            auto* proxy = new ProxyAction;
            const QPointer<ProxyAction> alive = proxy;
            Telling<QAction> backend(
                [&](const QMetaMethod&) { delete std::exchange(proxy, nullptr); });
            proxy->addBackendAction(&backend, A);
            QVERIFY(!alive);
        }},
    {"proxy while a backend is removed by itself",
        [] {
            proxyDeletedInARemoval(
                [](ProxyAction* proxy, QAction* backend) { proxy->removeBackendAction(backend); });
        }},
    {"proxy while a backend is removed by its context",
        [] {
            proxyDeletedInARemoval(
                [](ProxyAction* proxy, QAction*) { proxy->removeBackendContext(A); });
        }},
    {"proxy as it lets go of its backend",
        [] {
            QAction backend;
            QPointer<ProxyAction> proxy;
            bool isSwitching = false;
            proxy = new Telling<ProxyAction>([&](const QMetaMethod& signal) {
                if (isSwitching && signal == QMetaMethod::fromSignal(&QAction::hovered))
                    delete proxy;
            });
            proxy->addBackendAction(&backend, A);
            proxy->setCurrentContext({A});
            isSwitching = true;
            proxy->setCurrentContext({});
            QVERIFY(!proxy);
        }},
    {"manager while it hands contexts on",
        [] {
            QAction backend(QStringLiteral("backend"));
            ProxyAction first;
            ProxyAction second;
            first.addBackendAction(&backend, A);
            const QPointer<ProxyActionManager> manager = new ProxyActionManager;
            manager->registerProxyAction(&first, QStringLiteral("1"));
            manager->registerProxyAction(&second, QStringLiteral("2"));
            once(&first, &QAction::changed, [=] { delete manager; });
            manager->setCurrentContext({A});
            QVERIFY(!manager);
            QCOMPARE(first.currentActiveBackendAction(), &backend);
            QVERIFY(second.currentContext().isEmpty());
        }},
    {"area in currentChanged(false) while it adds a document",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.b->onNotCurrent = desk.deletion();
            desk.area->addWindow(new Document);
            desk.checkEnd();
        }},
    {"area in currentChanged(true) after a click on a tab",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.a->onCurrent = desk.deletion();
            desk.clickFirstTab();
            desk.checkEnd();
        }},
    {"window of the area in currentChanged(false) after a click on a tab",
        [] {
            Desk desk;
            auto* const window = new QWidget;
            desk.area->setParent(window);
            desk.area->show();
            window->show();
            QVERIFY(QTest::qWaitForWindowActive(window));
            desk.checkLeavingDocument([&] { delete window; });
        }},
    {"area of an inactive window in currentChanged(false) after a click on a tab",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            QWidget other;
            other.show();
            other.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&other));
            desk.checkLeavingDocument(desk.deletion());
        }},
    {"area in currentSubWindowChanged() as it activates a document",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            once(desk.area.data(), &MdiArea::currentSubWindowChanged, desk.deletion());
            desk.area->setCurrentSubWindow(desk.a);
            desk.checkEnd();
        }},
    {"area in currentChanged(true) after an activation in there",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.a->onCurrent = [&] {
                desk.area->setCurrentSubWindow(desk.b);
                desk.deletion()();
            };
            desk.area->setCurrentSubWindow(desk.a);
            desk.checkEnd();
        }},
    {"area in an event loop in currentChanged(true), as a document closes",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.a->onCurrent = [&] {
                QEventLoop loop;
                QTimer::singleShot(0, desk.deletion());
                QTimer::singleShot(10, &loop, &QEventLoop::quit);
                loop.exec();
            };
            desk.b->close();
            desk.checkEnd();
        }},
    {"area in the second of two activations, in an event loop in the first",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.a->onCurrent = [&] {
                QEventLoop loop;
                QTimer::singleShot(0, desk.area, [&] { desk.area->setCurrentSubWindow(desk.b); });
                QTimer::singleShot(10, &loop, &QEventLoop::quit);
                loop.exec();
                QVERIFY(desk.a && desk.b && desk.inner && desk.tabs);
            };
            desk.b->onCurrent = desk.deletion();
            desk.area->setCurrentSubWindow(desk.a);
            desk.checkEnd();
        }},
    {"area after an activation in it",
        [] {
            Desk desk;
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.area->setCurrentSubWindow(desk.a);
            delete desk.area;
            QVERIFY(!desk.a && !desk.b && !desk.inner && !desk.tabs);
        }},
    {"area with its navigator as it walks",
        [] {
            Desk desk;
            const QPointer<DocumentNavigator> navigator = new DocumentNavigator(desk.area);
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.area->setCurrentSubWindow(desk.a);
            desk.b->onCurrent = desk.deletion();
            navigator->activatePreviousUsed();
            QVERIFY(!navigator);
            desk.checkEnd();
        }},
    {"area with its navigator as it closes all",
        [] {
            Desk desk;
            const QPointer<DocumentNavigator> navigator = new DocumentNavigator(desk.area);
            QVERIFY(QTest::qWaitForWindowActive(desk.area));
            desk.area->setCurrentSubWindow(desk.a);
            desk.b->onCurrent = desk.deletion();
            QVERIFY(!navigator->closeAll());
            QVERIFY(!navigator);
            desk.checkEnd();
        }},
    {"area with its navigator as that asks",
        [] {
            Desk desk;
            const QPointer<DocumentNavigator> navigator = new DocumentNavigator(desk.area);
            const QString answer = A;
            navigator->askBeforeClosing = [&, answer](const QList<IMdiSubWindow*>& /*documents*/) {
                delete desk.area;
                return answer == A;
            };
            QVERIFY(!navigator->closeAll());
            QVERIFY(!navigator && !desk.a);
        }},
    {"area when a document has left it",
        [] {
            QWidget window;
            const QPointer<MdiArea> area = new MdiArea(&window);
            Document document;
            area->addWindow(&document);
            document.onParentChange = [&] { delete area; };
            area->removeWindow(&document);
            QVERIFY(!area);
            QVERIFY(!document.ownerArea());
        }},
    {"area while it adds a document",
        [] {
            const QPointer<MdiArea> area = new MdiArea;
            const QPointer<Document> document = new Document;
            document->onStateWatched = [&] { delete area; };
            area->addWindow(document);
            QVERIFY(!area && !document);
        }},
    {"document while it is added",
        [] {
            MdiArea area;
            const QPointer<Document> document = new Document;
            document->onStateWatched = [&] { delete document; };
            area.addWindow(document);
            QVERIFY(!document);
            QVERIFY(area.subWindows().isEmpty());
        }},
    {"document in its currentChanged(true)",
        [] {
            Desk desk;
            const QSignalSpy changes(desk.area, &MdiArea::currentSubWindowChanged);
            desk.a->onCurrent = [&] {
                const QSignalBlocker blocker(desk.inner);
                delete desk.a;
            };
            desk.activate(desk.a);
            QVERIFY(!desk.a);
            QVERIFY(changes.isEmpty());
        }},
    {"document that becomes current in the currentChanged(false) of another one",
        [] {
            Desk desk;
            const QSignalSpy changes(desk.area, &MdiArea::currentSubWindowChanged);
            desk.b->onNotCurrent = [&] {
                const QSignalBlocker blocker(desk.inner);
                delete desk.a;
            };
            desk.activate(desk.a);
            QVERIFY(!desk.a);
            QVERIFY(changes.isEmpty());
        }},
    {"document in its currentChanged(false)",
        [] {
            Desk desk;
            desk.b->onNotCurrent = [&] { delete desk.b; };
            desk.activate(desk.a);
            QVERIFY(!desk.b);
            QCOMPARE(desk.area->currentSubWindow(), desk.a.data());
        }},
    {"document while another one becomes current as it closes",
        [] {
            Desk desk;
            const QSignalSpy closed(desk.b, &IMdiSubWindow::closed);
            desk.a->onCurrent = [&] { delete desk.b; };
            desk.b->close();
            QVERIFY(!desk.b);
            QVERIFY(closed.isEmpty());
        }},
    {"document in its closed()",
        [] {
            Desk desk;
            once(desk.b.data(), &IMdiSubWindow::closed, [&] { delete desk.b; });
            desk.b->close();
            QVERIFY(!desk.b);
        }},
    {"area in a document's closed()",
        [] {
            Desk desk;
            once(desk.b.data(), &IMdiSubWindow::closed, [&] { delete desk.area; });
            desk.b->close();
            QVERIFY(!desk.area);
        }},
    {"dialog in initialize()",
        [] {
            Preferences shown;
            shown.second.onInitialize = shown.deletion();
            shown.selectSecond();
            shown.checkNothingElseWasCalled(2, 1);
        }},
    {"dialog in pageWidget()",
        [] {
            Preferences shown;
            shown.second.onWidget = shown.deletion();
            shown.selectSecond();
            shown.checkNothingElseWasCalled(2, 2);
        }},
    {"dialog in apply() by Apply",
        [] {
            Preferences shown;
            shown.selectSecond();
            shown.first.onApply = shown.deletion();
            shown.press(QDialogButtonBox::Apply);
            shown.checkNothingElseWasCalled(3, 2);
        }},
    {"dialog in apply() by OK",
        [] {
            Preferences shown;
            shown.selectSecond();
            shown.first.onApply = shown.deletion();
            shown.press(QDialogButtonBox::Ok);
            shown.checkNothingElseWasCalled(3, 2);
        }},
    {"dialog in the last apply() by OK",
        [] {
            Preferences shown;
            shown.first.onApply = shown.deletion();
            shown.press(QDialogButtonBox::Ok);
            shown.checkNothingElseWasCalled(3, 0);
        }},
    {"dialog in finalize()",
        [] {
            Preferences shown;
            shown.selectSecond();
            shown.first.onFinalize = shown.deletion();
            shown.press(QDialogButtonBox::Cancel);
            shown.checkNothingElseWasCalled(3, 2);
        }},
    {"dialog in finalize() as its window closes",
        [] {
            Preferences shown;
            shown.first.onFinalize = shown.deletion();
            shown.dialog->close();
            shown.checkNothingElseWasCalled(3, 0);
        }},
    {"sender in the callable of a wrapper",
        [] {
            const QPointer<QPushButton> button = new QPushButton;
            QString seen;
            LambdaSlotWrapper::connect(
                button, SIGNAL(clicked()), [&seen, button, text = QStringLiteral("captured")] {
                    delete button;
                    seen = text;
                });
            button->click();
            QVERIFY(!button);
            QCOMPARE(seen, QStringLiteral("captured"));
        }},
    {"window of the sender while the callable of a wrapper runs an event loop",
        [] {
            auto* const window = new QWidget;
            const QPointer<QPushButton> button = new QPushButton(window);
            QString seen;
            LambdaSlotWrapper::connect(
                button, SIGNAL(clicked()), [&seen, window, text = QStringLiteral("captured")] {
                    QEventLoop loop;
                    QTimer::singleShot(0, &loop, [&] {
                        delete window;
                        loop.quit();
                    });
                    loop.exec();
                    seen = text;
                });
            button->click();
            QVERIFY(!button);
            QCOMPARE(seen, QStringLiteral("captured"));
        }},
    {"wrapper that would delete itself in its callable",
        [] {
            QPointer<LambdaSlotWrapper> wrapper;
            wrapper = new LambdaSlotWrapper(nullptr, [&wrapper] { delete wrapper; });
            wrapper->autoDelete = true;
            wrapper->trigger();
            QVERIFY(!wrapper);
        }},
    {"file watcher in its fileChanged()",
        [] {
            const QPointer<FileWatcher> watcher = new FileWatcher;
            once(watcher.data(), &FileWatcher::fileChanged, [=] { delete watcher; });
            QVERIFY(QMetaObject::invokeMethod(
                watcher, "onFileChanged", Q_ARG(QString, QStringLiteral("file"))));
            QVERIFY(!watcher);
        }},
};

} // namespace

/// What a callback deletes is not looked at afterwards, and the steps that remain are left out.
/// Where Qt itself looks at it, as at documents, the callback is reached without Qt on the way.
class DeletedInCallbackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingDeadIsRead_data();
    void nothingDeadIsRead();
};

void DeletedInCallbackTest::nothingDeadIsRead_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const Case& one : Cases)
        QTest::newRow(one.name) << index++;
}

void DeletedInCallbackTest::nothingDeadIsRead()
{
    QFETCH(int, index);
    Recorder lines; // They are those of the other tests.
    recorder = &lines;
    Cases[index].run();
}

QTEST_MAIN(DeletedInCallbackTest)
#include "tst_deleted_in_callback.moc"
