// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "event_mgr.h"
#include "ievent_handler.h"
#include "proxy_act.h"
#include "trace_p.h"

#include <QDialog>

namespace Bench {
namespace {

class Page : public Zentu::IOptionPage
{
public:
    QStringList category() const override
    {
        return {QStringLiteral("Editor"), QStringLiteral("Font")};
    }
    QWidget* pageWidget() override { return nullptr; }
    void initialize() override { }
    void finalize() override { }
    void apply() override { }
};

class Handler : public Zentu::IEventHandler
{
public:
    void handleEvent(Zentu::IEvent* /*event*/) override { }
};

/// What the lines are about.
struct Subjects
{
    Subjects()
    {
        action.setText(QStringLiteral("&Copy"));
        action.setToolTip(QStringLiteral("Copy the selection"));
        withShortcut.setText(QStringLiteral("&Copy"));
        withShortcut.setShortcut(Qt::CTRL + Qt::Key_C);
        proxy.defaultProp()->setText(QStringLiteral("&Copy"));
        toolBar.setObjectName(QStringLiteral("toolBar"));
        window.setShortTitle(QStringLiteral("notes.txt"));
    }

    Zentu::EventManager manager;
    QObject object;
    Handler handler;
    Zentu::IEvent event{QStringLiteral("document.opened")};
    Zentu::ProxyAction proxy;
    QAction action;
    QAction withShortcut;
    QDialog dialog;
    QWidget toolBar;
    Zentu::IMdiSubWindow window;
    Page page;
    QString name = QStringLiteral("edit.copy");
    QStringList contexts{
        QStringLiteral("text"), QStringLiteral("document"), QStringLiteral("global")};
};

// Writes the same line in each of the ways.
template <typename Compose>
void addLine(const char* row, const Compose& compose)
{
    const auto zentu = [=] { compose(Zentu::Trace()); };
    const auto stream = [=] { compose(wisp::qlogstream(wisp::LogInfo)); };
    const auto hand = [=] { compose(HandLine()); };
    const auto plain = [=] { compose(PlainLine()); };
    if (textOf(zentu) != textOf(plain) || textOf(stream) != textOf(plain)
        || textOf(hand) != textOf(plain))
        qFatal("the lines of \"%s\" differ: %s", row, textOf(zentu).c_str());

    const std::string name = std::string("trace/") + row;
    add(name, "zentu", {}, [=](benchmark::State& state) { repeat(state, zentu); });
    add(name, "stream", {}, [=](benchmark::State& state) { repeat(state, stream); });
    add(name, "hand", {}, [=](benchmark::State& state) { repeat(state, hand); });
    add(name, "plain", {}, [=](benchmark::State& state) { repeat(state, plain); });
}

} // namespace

void addTraceRows()
{
    // Rows run after they were added; the application is gone before statics are.
    static const Subjects& s = *new Subjects;
    const QObject* const manager = &s.manager;
    const QAction* const proxy = &s.proxy;
    const QWidget* const dialog = &s.dialog;

    addLine("text", [](auto&& l) { l << "set context and update for all proxy actions"; });
    addLine("object, text", [=](auto&& l) { l << manager << "clear all objects"; });
    addLine("object, text, string", [=](auto&& l) { l << manager << "push context:" << s.name; });
    addLine("object, text, object",
        [=](auto&& l) { l << manager << "add object:" << static_cast<const QObject*>(&s.object); });
    addLine("object, text, handler, string", [=](auto&& l) {
        l << manager
          << "new event subscription:" << static_cast<const Zentu::IEventHandler*>(&s.handler)
          << s.name;
    });
    addLine("object, text, event, number", [=](auto&& l) {
        l << manager << "post event" << static_cast<const Zentu::IEvent*>(&s.event) << 1;
    });
    addLine("object, text, string, text",
        [=](auto&& l) { l << manager << "cancel re-watch:" << s.name << "file not exists"; });
    addLine("object, text, string, action",
        [=](auto&& l) { l << manager << "register proxy action" << s.name << proxy; });
    addLine("object, text, string, widget", [=](auto&& l) {
        l << manager << "register toolbar" << s.name << static_cast<const QWidget*>(&s.toolBar);
    });
    addLine("action, text, list", [=](auto&& l) { l << proxy << "set context" << s.contexts; });
    addLine("action, text, action", [=](auto&& l) {
        l << proxy << "change active backend action to" << static_cast<const QAction*>(&s.action);
    });
    addLine("action, text, null", [=](auto&& l) {
        l << proxy << "change active backend action to" << static_cast<const QAction*>(nullptr);
    });
    addLine("action, text, action with shortcut", [=](auto&& l) {
        l << proxy << "remove backend action" << static_cast<const QAction*>(&s.withShortcut);
    });
    addLine("action, text, string, action", [=](auto&& l) {
        l << proxy << "add backend action" << s.name << static_cast<const QAction*>(&s.action);
    });
    addLine("action, text, object", [=](auto&& l) {
        l << proxy << "backend action destroyed" << static_cast<const QObject*>(&s.object);
    });
    addLine("widget, text", [=](auto&& l) { l << dialog << "item changed"; });
    addLine("widget, text, number", [=](auto&& l) { l << dialog << "done" << 1; });
    addLine("widget, text, page", [=](auto&& l) {
        l << dialog << "show option page" << static_cast<const Zentu::IOptionPage*>(&s.page);
    });
    addLine("widget, text, document", [=](auto&& l) {
        l << dialog << "active window:" << static_cast<const Zentu::IMdiSubWindow*>(&s.window);
    });
    addLine("document, text", [=](auto&& l) {
        l << static_cast<const Zentu::IMdiSubWindow*>(&s.window) << "destroying";
    });
    addLine("texts, list", [=](auto&& l) {
        l << "CmdLineParser"
          << "parse" << s.contexts;
    });
}

} // namespace Bench
