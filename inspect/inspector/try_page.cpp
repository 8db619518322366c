// SPDX-License-Identifier: MIT
#include "try_page.h"

#include "context_mgr.h"
#include "event_mgr.h"
#include "proxy_act.h"
#include "why.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace Zentu::Inspect {

/// The first living one of those that have spoken. The host is not asked for its instance, which
/// would make one, and in this thread.
template <typename Wanted, typename Known>
static Wanted* firstOf(const Session& session, const Known& known)
{
    for (const auto& entry : known) {
        if (auto* const found = qobject_cast<Wanted*>(session.object(entry.first)))
            return found;
    }
    return nullptr;
}

static QComboBox* makeEditable(const QString& name)
{
    auto* const box = new QComboBox;
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setAccessibleName(name);
    box->lineEdit()->setAccessibleName(name);
    return box;
}

TryPage::TryPage(Session& session)
    : PageWindow(session, QStringLiteral("try"), tr("Try"))
    , m_isOn(new QCheckBox(tr("&Let me change the program")))
    , m_tools(new QWidget)
    , m_type(makeEditable(tr("Type of the event")))
    , m_mode(new QComboBox)
    , m_values(new QPlainTextEdit(QStringLiteral("{}")))
    , m_context(makeEditable(tr("Context")))
    , m_action(makeEditable(tr("Action")))
    , m_answer(new QLabel)
{
    m_mode->addItems({QStringLiteral("Auto"), QStringLiteral("Direct"), QStringLiteral("Queued"),
        QStringLiteral("BlockingQueued")});
    m_mode->setAccessibleName(tr("Mode"));
    m_values->setAccessibleName(tr("Values"));
    m_values->setMaximumHeight(6 * fontMetrics().height());
    m_answer->setWordWrap(true);
    setWidget(makeContents());
    m_tools->setEnabled(false);
    connect(m_isOn, &QCheckBox::toggled, m_tools, &QWidget::setEnabled);
}

QWidget* TryPage::makeContents()
{
    auto* const events = new QGroupBox(tr("Post an event"));
    auto* const form = new QFormLayout(events);
    form->addRow(tr("&Type:"), m_type);
    form->addRow(tr("&Mode:"), m_mode);
    form->addRow(tr("&Values, as JSON:"), m_values);
    auto* const postButton = new QPushButton(tr("&Post"));
    postButton->setObjectName(QStringLiteral("post"));
    form->addRow(postButton);

    auto* const contexts = new QGroupBox(tr("Change the contexts"));
    auto* const contextRow = new QHBoxLayout(contexts);
    auto* const addButton = new QPushButton(tr("&Add"));
    addButton->setObjectName(QStringLiteral("add"));
    auto* const removeButton = new QPushButton(tr("&Remove"));
    removeButton->setObjectName(QStringLiteral("remove"));
    contextRow->addWidget(m_context, 1);
    contextRow->addWidget(addButton);
    contextRow->addWidget(removeButton);

    auto* const actions = new QGroupBox(tr("Trigger an action"));
    auto* const actionRow = new QHBoxLayout(actions);
    auto* const triggerButton = new QPushButton(tr("Tri&gger"));
    triggerButton->setObjectName(QStringLiteral("trigger"));
    actionRow->addWidget(m_action, 1);
    actionRow->addWidget(triggerButton);

    auto* const tools = new QVBoxLayout(m_tools);
    tools->setContentsMargins(0, 0, 0, 0);
    tools->addWidget(events);
    tools->addWidget(contexts);
    tools->addWidget(actions);
    auto* const contents = new QWidget;
    auto* const layout = new QVBoxLayout(contents);
    layout->addWidget(m_isOn);
    layout->addWidget(m_tools);
    layout->addWidget(m_answer);
    layout->addStretch();

    connect(postButton, &QPushButton::clicked, this, &TryPage::post);
    connect(addButton, &QPushButton::clicked, this, [this] {
        changeContext(
            [](Session& session, const QString& name) {
                firstOf<ContextManager>(session, session.program().contextManagers())
                    ->addContext(name);
            },
            tr("Added “%1”."));
    });
    connect(removeButton, &QPushButton::clicked, this, [this] {
        changeContext(
            [](Session& session, const QString& name) {
                firstOf<ContextManager>(session, session.program().contextManagers())
                    ->removeContext(name);
            },
            tr("Removed “%1”."));
    });
    connect(triggerButton, &QPushButton::clicked, this, &TryPage::trigger);
    return contents;
}

void TryPage::say(const QString& text)
{
    m_answer->setText(text);
}

static void offer(QComboBox* box, const QStringList& names)
{
    QStringList present;
    for (int i = 0; i < box->count(); ++i)
        present.append(box->itemText(i));
    if (present == names)
        return;
    const QString typed = box->currentText();
    box->clear();
    box->addItems(names);
    box->setEditText(typed);
}

void TryPage::refresh()
{
    QStringList types;
    QStringList contexts;
    QStringList actions;
    for (const auto& [bus, known] : session().program().buses()) {
        for (const auto& [name, type] : known)
            types.append(plain(name));
    }
    for (const auto& [address, proxy] : session().program().proxies()) {
        for (const std::string& id : proxy.ids)
            actions.append(plain(id));
        for (const auto& [context, entry] : proxy.backends.entries())
            contexts.append(plain(context));
    }
    contexts.sort();
    contexts.removeDuplicates();
    actions.sort();
    offer(m_type, types);
    offer(m_context, contexts);
    offer(m_action, actions);
}

void TryPage::post()
{
    auto* const bus = firstOf<EventManager>(session(), session().program().buses());
    if (!bus)
        return say(tr("The program has no event bus yet."));
    QJsonParseError error{};
    const QJsonDocument values = QJsonDocument::fromJson(m_values->toPlainText().toUtf8(), &error);
    if (!values.isObject())
        return say(tr("The values are no JSON object: %1").arg(error.errorString()));
    const auto mode = static_cast<EventManager::PostMode>(m_mode->currentIndex());
    if (mode == EventManager::BlockingQueued)
        return say(
            tr("From this thread, which is the bus' own, a blocking post would wait for ever."));
    auto event = std::make_unique<IEvent>(m_type->currentText());
    event->data() = values.object().toVariantMap();
    say(tr("Posted “%1”.").arg(m_type->currentText()));
    bus->postEvent(event.release(), mode);
}

void TryPage::changeContext(void (*change)(Session&, const QString&), const QString& done)
{
    if (!firstOf<ContextManager>(session(), session().program().contextManagers()))
        return say(tr("The program has no context manager yet."));
    const QString name = m_context->currentText();
    say(done.arg(name));
    change(session(), name);
}

void TryPage::trigger()
{
    const QString id = m_action->currentText();
    const Program& program = session().program();
    for (const auto& [address, proxy] : program.proxies()) {
        for (const std::string& known : proxy.ids) {
            auto* const action = qobject_cast<ProxyAction*>(session().object(address));
            if (plain(known) != id || !action)
                continue;
            const Reason answer = why(session(), *action);
            if (!answer.isEnabled)
                return say(tr("“%1” is disabled. %2").arg(id, answer.sentence));
            say(tr("Triggered “%1”.").arg(id));
            return action->trigger();
        }
    }
    say(tr("No action “%1” is registered.").arg(id));
}

} // namespace Zentu::Inspect
