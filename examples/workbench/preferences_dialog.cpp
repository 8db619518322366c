// SPDX-License-Identifier: MIT
#include "preferences_dialog.h"

#include "actions.h"
#include "preferences_filter.h"
#include "proxy_act.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QStackedWidget>
#include <QTreeWidget>

#include <algorithm>

// The actions that have fixed keys.
static QList<QAction*> fixedActions(const QWidget* window)
{
    QList<QAction*> actions = window->findChildren<QAction*>();
    const auto isProxy = [](QAction* action) {
        return action->shortcut().isEmpty() || qobject_cast<Zentu::ProxyAction*>(action)
            || qobject_cast<Zentu::ProxyAction*>(action->parent());
    };
    actions.erase(std::remove_if(actions.begin(), actions.end(), isProxy), actions.end());
    return actions;
}

PreferencesDialog::Pages::Pages(const QWidget* window)
    : forms(preferencePages())
    , shortcuts({tr("Keyboard"), tr("Shortcuts")}, actionIds(), fixedActions(window))
{
}

QList<Zentu::IOptionPage*> PreferencesDialog::Pages::list()
{
    QList<Zentu::IOptionPage*> all;
    for (const auto& form : forms)
        all.append(form.get());
    all.append(&shortcuts);
    return all;
}

QStringList PreferencesDialog::Pages::textsOf(const QStringList& category) const
{
    for (const auto& form : forms) {
        if (form->category() == category)
            return form->texts();
    }
    return shortcuts.category() == category ? shortcuts.texts() : QStringList();
}

PreferencesDialog::PreferencesDialog(QWidget* window)
    : PreferencesDialog(std::make_unique<Pages>(window), window)
{
}

PreferencesDialog::PreferencesDialog(std::unique_ptr<Pages> pages, QWidget* window)
    : OptionDialog(pages->list(), window)
    , m_pages(std::move(pages))
{
    setObjectName(QStringLiteral("preferences"));
    setWindowTitle(tr("Preferences"));
    findChild<QTreeWidget*>()->setAccessibleName(tr("Pages"));
    new PreferencesFilter(
        this, [this](const QStringList& category) { return m_pages->textsOf(category); });
    connect(findChild<QStackedWidget*>(), &QStackedWidget::currentChanged, this,
        &PreferencesDialog::orderTabs);
    orderTabs();
}

// A page joins the end of the order when it is first shown, behind the buttons.
void PreferencesDialog::orderTabs()
{
    QWidgetList order = {findChild<PreferencesFilter*>(), findChild<QTreeWidget*>()};
    const QWidgetList onPage =
        findChild<QStackedWidget*>()->currentWidget()->findChildren<QWidget*>();
    // The list that a box pops up is a window of its own.
    std::copy_if(
        onPage.cbegin(), onPage.cend(), std::back_inserter(order), [this](const QWidget* widget) {
            return widget->focusPolicy() & Qt::TabFocus && !widget->focusProxy()
                && widget->window() == this;
        });
    const QList<QAbstractButton*> buttons = findChild<QDialogButtonBox*>()->buttons();
    std::copy(buttons.cbegin(), buttons.cend(), std::back_inserter(order));
    for (int i = 1; i < order.size(); ++i)
        setTabOrder(order.at(i - 1), order.at(i));
}
