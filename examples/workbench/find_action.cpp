// SPDX-License-Identifier: MIT
#include "find_action.h"

#include "action_mgr.h"
#include "proxy_act.h"

#include <QAction>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

static const int ActionRole = Qt::UserRole;

// As it is read in the menu.
static QString plainText(const QAction* action)
{
    QString text = action->text();
    text.replace(QLatin1String("&&"), QString(QChar(1)));
    text.remove(QLatin1Char('&'));
    return text.replace(QChar(1), QLatin1Char('&'));
}

// What keeps an action from being triggered; empty if nothing does.
static QString obstacleOf(const QAction* action)
{
    if (action->isEnabled())
        return QString();
    const auto* proxy = qobject_cast<const Zentu::ProxyAction*>(action);
    if (!proxy)
        return FindActionDialog::tr("disabled");
    return proxy->currentActiveBackendAction()
        ? FindActionDialog::tr("its backend is disabled")
        : FindActionDialog::tr("no context of it is in force");
}

// Keys have a direction of their own.
static QString leftToRight(const QString& keys)
{
    return keys.isEmpty() || !QGuiApplication::isRightToLeft()
        ? keys
        : QChar(0x200e) + keys + QChar(0x200e);
}

FindActionDialog::FindActionDialog(const QString& menuBar, QWidget* parent)
    : QDialog(parent)
    , m_field(new QLineEdit(this))
    , m_list(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("find_action"));
    setWindowTitle(tr("Find Action"));
    resize(860, 420);
    m_field->setObjectName(QStringLiteral("find_action_text"));
    m_field->setAccessibleName(tr("Part of the action's text"));
    m_field->setPlaceholderText(tr("Part of the action's text"));
    m_field->setClearButtonEnabled(true);
    m_field->installEventFilter(this);
    m_list->setObjectName(QStringLiteral("find_action_list"));
    m_list->setAccessibleName(tr("Actions"));
    m_list->setHeaderLabels({tr("Action"), tr("Menu"), tr("Shortcut"), tr("Disabled, because")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_field);
    layout->addWidget(m_list);

    fill(Zentu::ActionManager::instance()->getMenubar(menuBar)->actions(), QString());
    for (int column = 0; column < m_list->columnCount(); ++column)
        m_list->resizeColumnToContents(column);
    connect(m_field, &QLineEdit::textChanged, this, &FindActionDialog::filter);
    connect(m_field, &QLineEdit::returnPressed, this, &FindActionDialog::triggerChosen);
    connect(m_list, &QTreeWidget::itemActivated, this, &FindActionDialog::triggerChosen);
    filter();
}

void FindActionDialog::fill(const QList<QAction*>& actions, const QString& path)
{
    for (QAction* action : actions) {
        const QString text = plainText(action);
        if (action->menu()) {
            Q_EMIT action->menu()->aboutToShow(); // where a menu is filled when it is needed
            fill(action->menu()->actions(),
                path.isEmpty() ? text : path + QStringLiteral(" \u25b8 ") + text);
            continue;
        }
        if (action->isSeparator() || !action->isVisible())
            continue;
        const QString obstacle = obstacleOf(action);
        auto* item = new QTreeWidgetItem(m_list,
            {text, path, leftToRight(action->shortcut().toString(QKeySequence::NativeText)),
                obstacle});
        item->setIcon(0, action->icon());
        item->setData(0, ActionRole, QVariant::fromValue(QPointer<QObject>(action)));
        for (int column = 0; !obstacle.isEmpty() && column < m_list->columnCount(); ++column)
            item->setForeground(column, palette().brush(QPalette::Disabled, QPalette::Text));
    }
}

void FindActionDialog::filter()
{
    QTreeWidgetItem* first = nullptr;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem* const item = m_list->topLevelItem(row);
        const bool matches = item->text(0).contains(m_field->text(), Qt::CaseInsensitive);
        item->setHidden(!matches);
        if (matches && !first)
            first = item;
    }
    choose(first);
}

void FindActionDialog::choose(QTreeWidgetItem* item)
{
    m_list->setCurrentItem(item);
    if (item)
        m_list->scrollToItem(item);
}

// The keyboard stays in the field and goes through the list.
bool FindActionDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && m_list->currentItem()) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        QTreeWidgetItem* const item = m_list->currentItem();
        if (key == Qt::Key_Down || key == Qt::Key_Up) {
            if (auto* next =
                    key == Qt::Key_Down ? m_list->itemBelow(item) : m_list->itemAbove(item))
                choose(next);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

// After the dialog has gone: what is triggered may open one of its own.
void FindActionDialog::triggerChosen()
{
    const QTreeWidgetItem* const item = m_list->currentItem();
    const QPointer<QObject> chosen =
        item ? item->data(0, ActionRole).value<QPointer<QObject>>() : QPointer<QObject>();
    auto* const action = qobject_cast<QAction*>(chosen.data());
    if (!action || !action->isEnabled())
        return;
    accept();
    QTimer::singleShot(0, action, &QAction::trigger);
}
