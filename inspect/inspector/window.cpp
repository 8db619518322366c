// SPDX-License-Identifier: MIT
#include "window.h"

#include "lines_page.h"
#include "own_lines.h"
#include "picker.h"
#include "preferences.h"
#include "proxy_act.h"
#include "try_page.h"
#include "why.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabBar>
#include <QVBoxLayout>

#include <optional>

namespace Zentu::Inspect {

Window::Window(Session& session)
    : m_session(session)
    , m_answer(new QLabel(this))
    , m_picker(new Picker(this))
    , m_record(new QAction(this))
{
    setObjectName(QStringLiteral("zentu_inspector"));
    setWindowTitle(tr("Inspector of %1").arg(QCoreApplication::applicationName()));
    setAttribute(Qt::WA_QuitOnClose, false);
    setAttribute(Qt::WA_ShowWithoutActivating);
    resize(960, 680);

    const OwnLines::Scope own;
    m_area = new MdiArea;
    OwnLines::add(m_area);
    auto* const contents = new QWidget;
    auto* const layout = new QVBoxLayout(contents);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_answer);
    layout->addWidget(m_area);
    setCentralWidget(contents);
    m_answer->setWordWrap(true);
    m_answer->setMargin(6);
    m_answer->setTextInteractionFlags(Qt::TextBrowserInteraction);
    m_answer->setAccessibleName(tr("Answer"));
    m_answer->hide();
    connect(
        m_answer, &QLabel::linkActivated, this, [this](const QString& link) { go(QUrl(link)); });

    makeMenus();
    makePages();
    connect(m_picker, &Picker::picked, this, &Window::answerPick);
    connect(m_picker, &Picker::activeChanged, this, [this](bool active) {
        if (active)
            statusBar()->showMessage(tr("Click anything in the program; Escape ends it."));
        else
            statusBar()->clearMessage();
    });
    statusBar();
}

void Window::makePages()
{
    const QList<PageWindow*> pages{new ActionsPage(m_session), new EventsPage(m_session),
        new ContextsPage(m_session), new ObjectsPage(m_session), new LinesPage(m_session),
        new TryPage(m_session)};
    for (PageWindow* const page : pages) {
        m_area->addWindow(page);
        QAction* const open =
            m_pageMenu->addAction(page->windowTitle(), this, [this, page] { activate(page); });
        open->setShortcut(QKeySequence(QStringLiteral("Alt+%1").arg(m_pageMenu->actions().size())));
        connect(page, &PageWindow::linkClicked, this, QOverload<const QUrl&>::of(&Window::go));
        for (ProxyAction* const proxy : qAsConst(m_proxies)) {
            if (page->findAction() && proxy->objectName() == QLatin1String("find"))
                proxy->addBackendAction(page->findAction(), page->name());
        }
    }
    // The context of the proxies is the page that is current.
    connect(m_area, &MdiArea::currentSubWindowChanged, this, [this](IMdiSubWindow* current) {
        const OwnLines::Scope own;
        const QStringList contexts{current ? current->objectName() : QString()};
        for (ProxyAction* const proxy : qAsConst(m_proxies))
            proxy->setCurrentContext(contexts);
    });
    if (auto* const tabs = m_area->findChild<QTabBar*>())
        tabs->setTabsClosable(false);
    m_area->setCurrentSubWindow(pages.first());
    for (ProxyAction* const proxy : qAsConst(m_proxies))
        proxy->setCurrentContext({pages.first()->name()});
}

ProxyAction* Window::makeProxy(const QString& text, const QKeySequence& key)
{
    auto* const proxy = new ProxyAction(this);
    OwnLines::add(proxy);
    proxy->defaultProp()->setText(text);
    proxy->defaultProp()->setShortcut(key);
    m_proxies.append(proxy);
    return proxy;
}

void Window::makeMenus()
{
    QMenu* const file = menuBar()->addMenu(tr("&Inspector"));
    QAction* const pick = file->addAction(tr("&Pick"), m_picker, &Picker::start);
    pick->setShortcut(QKeySequence(QStringLiteral("Ctrl+P")));
    m_record->setText(tr("&Record…"));
    m_record->setShortcut(QKeySequence(QStringLiteral("Ctrl+R")));
    connect(m_record, &QAction::triggered, this, &Window::toggleRecording);
    file->addAction(m_record);
    ProxyAction* const find = makeProxy(tr("&Filter"), QKeySequence::Find);
    find->setObjectName(QStringLiteral("find"));
    file->addAction(find);
    file->addSeparator();
    file->addAction(tr("Pr&eferences…"), this, &Window::showPreferences);
    file->addSeparator();
    file->addAction(tr("&Close"), this, &QWidget::close);

    m_pageMenu = menuBar()->addMenu(tr("&Page"));
    auto* const callers = new QAction(tr("Callers with &Lines"), this);
    callers->setCheckable(true);
    connect(callers, &QAction::toggled, this, [this](bool on) {
        static_cast<EventsPage*>(page(QStringLiteral("event")))->setShowsLines(on);
    });
    file->insertAction(file->actions().at(3), callers);
}

PageWindow* Window::page(const QString& name) const
{
    const QList<IMdiSubWindow*> pages = m_area->subWindows();
    for (IMdiSubWindow* const page : pages) {
        if (page->objectName() == name)
            return static_cast<PageWindow*>(page);
    }
    return nullptr;
}

void Window::activate(PageWindow* page)
{
    const OwnLines::Scope own;
    m_area->setCurrentSubWindow(page);
}

void Window::go(const QUrl& link)
{
    go(link.scheme(), link.path(QUrl::FullyDecoded));
}

void Window::go(const QString& name, const QString& id)
{
    // An object whose kind the link does not know is found among the objects by its address.
    const bool isAddress = name == QLatin1String("address");
    PageWindow* const target = page(isAddress ? QStringLiteral("object") : name);
    if (!target)
        return;
    activate(target);
    target->select(id);
}

void Window::answerPlainAction(const QAction& action)
{
    const QString text = action.text().remove(QLatin1Char('&'));
    m_answer->setText(QStringLiteral("<b>%1</b>: %2")
                          .arg(text.toHtmlEscaped(), why(action).sentence.toHtmlEscaped()));
    m_answer->show();
}

void Window::answerPick(QWidget* widget, const QPoint& position)
{
    m_answer->hide();
    QAction* const action = Picker::actionAt(widget, position);
    const Program& program = m_session.program();
    const auto proxy = program.proxies().find(reinterpret_cast<Address>(action));
    if (action && proxy != program.proxies().end() && !proxy->second.ids.empty())
        return go(QStringLiteral("action"), plain(proxy->second.ids.front()));
    if (action)
        return answerPlainAction(*action);
    QObject* const document = Picker::documentAt(widget, position);
    const auto address = reinterpret_cast<Address>(document);
    if (document && program.documents().count(address) > 0)
        return go(QStringLiteral("address"), addressText(address));
    QStringList classes;
    for (const QWidget* parent = widget; parent; parent = parent->parentWidget())
        classes.append(QString::fromLatin1(parent->metaObject()->className())
            + (parent->objectName().isEmpty() ? QString()
                                              : QStringLiteral(" “%1”").arg(parent->objectName())));
    m_answer->setText(tr("No action and no document: %1")
                          .arg(classes.join(QLatin1String(" in ")).toHtmlEscaped()));
    m_answer->show();
}

void Window::toggleRecording()
{
    Listener& listener = m_session.listener();
    if (listener.isRecording()) {
        listener.stopRecording();
        m_record->setText(tr("&Record…"));
        return;
    }
    const QString path = QFileDialog::getSaveFileName(
        this, tr("Record"), QStringLiteral("trace.txt"), tr("Traces (*.txt)"));
    if (path.isEmpty())
        return;
    const QString error = listener.startRecording(path);
    statusBar()->showMessage(
        error.isEmpty() ? tr("Recording into %1").arg(path) : tr("%1: %2").arg(path, error));
    if (error.isEmpty())
        m_record->setText(tr("Stop &Recording"));
}

void Window::showPreferences()
{
    RecordingPage recording(m_session.listener());
    std::optional<OptionDialog> dialog;
    {
        const OwnLines::Scope own;
        dialog.emplace(QList<IOptionPage*>{&recording}, this);
        OwnLines::add(&*dialog);
    }
    dialog->setWindowTitle(tr("Preferences of the Inspector"));
    if (auto* const categories = dialog->findChild<QWidget*>(QStringLiteral("catalog_tree")))
        categories->setAccessibleName(tr("Categories"));
    dialog->exec();
}

} // namespace Zentu::Inspect
