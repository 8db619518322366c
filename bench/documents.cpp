// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "mdi_area.h"

#include <QCoreApplication>
#include <QMdiArea>
#include <QTabBar>
#include <QVBoxLayout>

#include <memory>

namespace Bench {
namespace {

/// The calls that an area makes, by hand, by someone who knows the number of each tab.
struct HandArea
{
    using Window = QMdiSubWindow;

    HandArea()
        : area(new QMdiArea(&widget))
        , tabs(new QTabBar(&widget))
    {
        tabs->setMovable(true);
        tabs->setTabsClosable(true);
        tabs->setShape(QTabBar::RoundedSouth);
        auto* const layout = new QVBoxLayout(&widget);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(area);
        layout->addWidget(tabs);
        area->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    }

    void open(QMdiSubWindow* window)
    {
        const int index = tabs->addTab(window->windowIcon(), window->windowTitle());
        tabs->setTabToolTip(index, window->windowTitle());
        tabs->setTabData(index, QVariant::fromValue(static_cast<void*>(window)));
        area->addSubWindow(window);
        window->show();
        if (index == 0)
            window->showMaximized();
        tabs->setCurrentIndex(index);
    }

    void activate(QMdiSubWindow* window, int index)
    {
        area->setActiveSubWindow(window);
        tabs->setCurrentIndex(index);
    }

    void retitle(QMdiSubWindow* window, int index, const QString& title)
    {
        window->setWindowTitle(title);
        tabs->setTabText(index, title);
        tabs->setTabToolTip(index, title);
    }

    void close(QMdiSubWindow* window, int index)
    {
        window->close();
        tabs->removeTab(index);
    }

    QWidget widget;
    QMdiArea* area;
    QTabBar* tabs;
};

struct ZentuArea
{
    using Window = Zentu::IMdiSubWindow;

    void open(Window* window) { widget.addWindow(window); }
    void activate(Window* window, int /*index*/) { widget.setCurrentSubWindow(window); }
    void retitle(Window* window, int /*index*/, const QString& title)
    {
        window->setWindowTitle(title);
    }
    void close(Window* window, int /*index*/) { widget.closeWindow(window); }

    Zentu::MdiArea widget;
};

template <typename Area>
struct Shown
{
    Shown()
    {
        area.widget.resize(800, 600);
        area.widget.show();
    }

    void create(int count)
    {
        for (int i = 0; i < count; ++i) {
            windows.push_back(new typename Area::Window);
            windows.back()->setAttribute(Qt::WA_DeleteOnClose);
            windows.back()->setWindowTitle(QStringLiteral("document-%1.txt").arg(i));
        }
    }

    void open()
    {
        for (auto* window : windows)
            area.open(window);
    }

    Area area;
    // Owned by the area once they are open.
    std::vector<typename Area::Window*> windows;
};

template <typename Area>
void open(benchmark::State& state)
{
    const auto prepare = [&] {
        auto shown = std::make_unique<Shown<Area>>();
        shown->create(static_cast<int>(state.range(0)));
        return shown;
    };
    repeat(state, prepare, [](auto& shown) { shown->open(); });
}

// One step is as many calls as there are documents.

template <typename Area>
void activate(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    Shown<Area> shown;
    shown.create(count);
    shown.open();
    QCoreApplication::processEvents();
    repeat(state, [&] {
        for (int i = 0; i < count; ++i) {
            const int index = (i * 7) % count;
            shown.area.activate(shown.windows[static_cast<std::size_t>(index)], index);
        }
    });
}

template <typename Area>
void retitle(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    Shown<Area> shown;
    shown.create(count);
    shown.open();
    QCoreApplication::processEvents();
    int round = 0;
    repeat(state, [&] {
        ++round;
        for (int i = 0; i < count; ++i)
            shown.area.retitle(shown.windows[static_cast<std::size_t>(i)], i,
                QStringLiteral("document-%1-%2.txt").arg(i).arg(round));
    });
}

template <typename Area>
void close(benchmark::State& state)
{
    const auto prepare = [&] {
        auto shown = std::make_unique<Shown<Area>>();
        shown->create(static_cast<int>(state.range(0)));
        shown->open();
        return shown;
    };
    repeat(state, prepare, [](auto& shown) {
        for (int i = static_cast<int>(shown->windows.size()) - 1; i >= 0; --i)
            shown->area.close(shown->windows[static_cast<std::size_t>(i)], i);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    });
}

} // namespace

void addDocumentRows()
{
    const std::vector<int> sizes = {10, 100, 500};
    add("documents/open", "zentu", sizes, open<ZentuArea>)->UseManualTime();
    add("documents/open", "hand", sizes, open<HandArea>)->UseManualTime();
    add("documents/activate", "zentu", sizes, activate<ZentuArea>);
    add("documents/activate", "hand", sizes, activate<HandArea>);
    add("documents/retitle", "zentu", sizes, retitle<ZentuArea>);
    add("documents/retitle", "hand", sizes, retitle<HandArea>);
    add("documents/close", "zentu", sizes, close<ZentuArea>)->UseManualTime();
    add("documents/close", "hand", sizes, close<HandArea>)->UseManualTime();
}

} // namespace Bench
