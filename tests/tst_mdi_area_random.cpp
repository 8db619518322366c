// SPDX-License-Identifier: MIT
//
// Does made-up things with an area and compares its tabs and its current document with a model.

#include "mdi_area.h"

#include "recorder.h"
#include "story.h"

#include <QCloseEvent>
#include <QMdiArea>
#include <QRandomGenerator>
#include <QScopedValueRollback>
#include <QTabBar>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using namespace Support;
using namespace Zentu;

namespace {

/// A document that may refuse to be closed.
class Document : public IMdiSubWindow
{
public:
    void currentChanged(bool /*current*/) override
    {
        if (onChange)
            onChange();
    }

    bool refuses = false;
    std::function<void()> onChange;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (refuses)
            event->ignore();
        else
            IMdiSubWindow::closeEvent(event);
    }
};

/// What a tab should show; without a document it was left behind by one that was deleted.
struct Tab
{
    Document* document;
    QString text;
    QString toolTip;
    qint64 icon;
};

/// An area, its model and the documents outside.
class World
{
public:
    World(quint32 seed, bool documentsCallBack)
        : m_documentsCallBack(documentsCallBack)
        , m_random(seed)
        , m_inner(m_area.findChild<QMdiArea*>())
        , m_tabBar(m_area.findChild<QTabBar*>())
    {
        m_area.resize(500, 400);
        m_area.show();
        QObject::connect(&m_area, &MdiArea::currentSubWindowChanged, &m_area,
            [this](IMdiSubWindow* current) { m_reported = current; });
    }

    void step()
    {
        ++m_steps;
        switch (m_random.bounded(11)) {
        case 0:
        case 1:
            add();
            break;
        case 2:
            remove();
            break;
        case 3:
            close();
            break;
        case 4:
        case 5:
            activate();
            break;
        case 6:
            retitle();
            break;
        case 7:
            changeIcon();
            break;
        case 8:
            drag();
            break;
        case 9:
            if (Document* document = any())
                document->refuses = m_random.bounded(2);
            break;
        default:
            deleteLater();
            break;
        }
        // Closed documents go with the event loop.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
        compare();
    }

private:
    std::vector<Tab>::iterator tabOf(const IMdiSubWindow* document)
    {
        return std::find_if(
            m_tabs.begin(), m_tabs.end(), [&](const Tab& tab) { return tab.document == document; });
    }

    Document* any()
    {
        QList<Document*> inside;
        for (const Tab& tab : m_tabs) {
            if (tab.document)
                inside.append(tab.document);
        }
        return inside.isEmpty() ? nullptr : inside.at(m_random.bounded(inside.size()));
    }

    void add()
    {
        if (m_tabs.size() > 12)
            return;
        Document* document = nullptr;
        if (!m_outside.empty() && m_random.bounded(2)) {
            document = m_outside.back().release();
            m_outside.pop_back();
        } else if (m_abandoned > 0) {
            // A new document might live where a deleted one did, whose tab is still there.
            return;
        } else {
            document = new Document;
            document->setWindowTitle(QStringLiteral("document %1").arg(++m_number));
            if (m_documentsCallBack)
                document->onChange = [this] { callBack(); };
        }
        m_area.addWindow(document);
        m_order.append(document);
        m_tabs.push_back({document, document->shortTitle(), document->windowTitle(),
            document->windowIcon().cacheKey()});
    }

    // What is told of the current document makes another one current.
    void callBack()
    {
        if (m_depth == 3 || m_random.bounded(3) != 0)
            return;
        const QScopedValueRollback<int> deeper(m_depth, m_depth + 1);
        if (m_random.bounded(4) == 0)
            retitle();
        else
            activate();
    }

    void remove()
    {
        Document* const document = any();
        if (!document)
            return;
        m_area.removeWindow(document);
        m_order.removeOne(document);
        m_tabs.erase(tabOf(document));
        m_outside.emplace_back(document);
    }

    void close()
    {
        Document* const document = any();
        if (!document)
            return;
        const bool accepts = !document->refuses;
        m_area.closeWindow(document);
        if (accepts) {
            m_order.removeOne(document);
            m_tabs.erase(tabOf(document));
        }
    }

    void activate()
    {
        if (Document* document = any())
            m_area.setCurrentSubWindow(document);
    }

    void retitle()
    {
        Document* const document = any();
        if (!document)
            return;
        const QString text =
            m_random.bounded(3) ? QString::number(m_random.bounded(100)) : QString();
        if (m_random.bounded(2))
            document->setShortTitle(text);
        else
            document->setWindowTitle(text);
        tabOf(document)->text = document->shortTitle();
        tabOf(document)->toolTip = document->windowTitle();
    }

    void changeIcon()
    {
        Document* const document = any();
        if (!document)
            return;
        QPixmap pixmap(4, 4);
        pixmap.fill(static_cast<Qt::GlobalColor>(2 + m_random.bounded(10)));
        document->setWindowIcon(QIcon(pixmap));
        tabOf(document)->icon = document->windowIcon().cacheKey();
    }

    void drag()
    {
        if (m_tabs.size() < 2)
            return;
        const int from = m_random.bounded(static_cast<int>(m_tabs.size()));
        const int to = m_random.bounded(static_cast<int>(m_tabs.size()));
        m_tabBar->moveTab(from, to);
        const Tab tab = m_tabs[static_cast<std::size_t>(from)];
        m_tabs.erase(m_tabs.begin() + from);
        m_tabs.insert(m_tabs.begin() + to, tab);
    }

    // Leaves the tab behind. The current one would be told that it is not current any more when it
    // is dead, so that one stays.
    void deleteLater()
    {
        Document* const document = any();
        if (!document || m_steps < 250 || document == m_area.currentSubWindow())
            return;
        ++m_abandoned;
        m_order.removeOne(document);
        tabOf(document)->document = nullptr;
        document->deleteLater();
    }

    void compare()
    {
        QCOMPARE(m_tabBar->count(), static_cast<int>(m_tabs.size()));
        for (int i = 0; i < m_tabBar->count(); ++i) {
            const Tab& tab = m_tabs[static_cast<std::size_t>(i)];
            QCOMPARE(m_tabBar->tabText(i), tab.text);
            QCOMPARE(m_tabBar->tabToolTip(i), tab.toolTip);
            QCOMPARE(m_tabBar->tabIcon(i).cacheKey(), tab.icon);
            if (tab.document) {
                QCOMPARE(m_tabBar->tabData(i).value<void*>(), static_cast<void*>(tab.document));
                QCOMPARE(tab.document->ownerArea(), &m_area);
            }
        }
        QCOMPARE(m_area.subWindows(), m_order);
        QCOMPARE(m_area.currentSubWindow(), m_reported);
        QCOMPARE(m_area.currentSubWindow(), m_inner->currentSubWindow());
        if (m_reported)
            QCOMPARE(
                m_tabBar->currentIndex(), static_cast<int>(tabOf(m_reported) - m_tabs.begin()));
        for (const auto& document : m_outside)
            QVERIFY(!document->ownerArea() && !document->parent());
    }

    const bool m_documentsCallBack;
    Recorder m_recorder;
    QRandomGenerator m_random;
    std::vector<std::unique_ptr<Document>> m_outside;
    MdiArea m_area;
    QMdiArea* m_inner;
    QTabBar* m_tabBar;
    std::vector<Tab> m_tabs;
    QList<IMdiSubWindow*> m_order;
    IMdiSubWindow* m_reported = nullptr;
    int m_number = 0;
    int m_abandoned = 0;
    int m_steps = 0;
    int m_depth = 0;
};

} // namespace

class MdiAreaRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsWhatTheModelShows_data() { addSeeds(10); }
    void showsWhatTheModelShows();
    void showsItWhateverDocumentsDo_data() { addSeeds(5); }
    void showsItWhateverDocumentsDo();
};

void MdiAreaRandomTest::showsWhatTheModelShows()
{
    QFETCH(quint32, seed);
    World world(seed, false);
    for (int i = 0; i < 300 && !QTest::currentTestFailed(); ++i)
        world.step();
}

void MdiAreaRandomTest::showsItWhateverDocumentsDo()
{
    QFETCH(quint32, seed);
    World world(seed, true);
    for (int i = 0; i < 240 && !QTest::currentTestFailed(); ++i)
        world.step();
}

QTEST_MAIN(MdiAreaRandomTest)
#include "tst_mdi_area_random.moc"
