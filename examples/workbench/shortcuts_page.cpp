// SPDX-License-Identifier: MIT
#include "shortcuts_page.h"

#include "proxy_act.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

// What the program chose itself is kept at the proxy's default look.
static const char* const OwnChoice = "own_shortcut";

static QAction* lookOf(const QString& id)
{
    return Zentu::ProxyActionManager::instance()->getProxyAction(id)->defaultProp();
}

static QString keyOf(const QString& id)
{
    return QStringLiteral("shortcuts/") + id;
}

static QKeySequence ownChoice(const QString& id)
{
    return lookOf(id)->property(OwnChoice).value<QKeySequence>();
}

static QString nameOf(const QAction* action)
{
    return action->text().remove(QLatin1Char('&'));
}

ShortcutsPage::ShortcutsPage(
    const QStringList& category, const QStringList& ids, const QList<QAction*>& others)
    : m_category(category)
    , m_ids(ids)
    , m_others(others)
{
}

QStringList ShortcutsPage::texts() const
{
    QStringList texts;
    for (const QString& id : m_ids)
        texts.append(nameOf(lookOf(id)));
    return texts;
}

void ShortcutsPage::restore(const QStringList& ids)
{
    const QSettings settings;
    for (const QString& id : ids) {
        QAction* const look = lookOf(id);
        look->setProperty(OwnChoice, QVariant::fromValue(look->shortcut()));
        const QVariant kept = settings.value(keyOf(id));
        if (kept.isValid())
            look->setShortcut(QKeySequence(kept.toString(), QKeySequence::PortableText));
    }
}

void ShortcutsPage::initialize()
{
    m_widget = new QWidget;
    m_list = new QTreeWidget(m_widget);
    m_list->setObjectName(QStringLiteral("shortcut_list"));
    m_list->setAccessibleName(tr("Actions"));
    m_list->setHeaderLabels({tr("Action"), tr("Shortcut")});
    m_list->setRootIsDecorated(false);
    m_edit = new QKeySequenceEdit(m_widget);
    m_edit->setObjectName(QStringLiteral("shortcut_edit"));
    m_edit->setAccessibleName(tr("Shortcut"));
    m_clear = new QPushButton(tr("C&lear"), m_widget);
    m_clear->setObjectName(QStringLiteral("shortcut_clear"));
    m_reset = new QPushButton(tr("&Reset"), m_widget);
    m_reset->setObjectName(QStringLiteral("shortcut_reset"));
    m_reset->setToolTip(tr("Back to the shortcut that the program chose"));
    m_conflict = new QLabel(m_widget);
    m_conflict->setObjectName(QStringLiteral("shortcut_conflict"));
    m_conflict->setTextFormat(Qt::PlainText);
    m_conflict->setWordWrap(true);

    auto* row = new QHBoxLayout;
    row->addWidget(m_edit, 1);
    row->addWidget(m_clear);
    row->addWidget(m_reset);
    auto* layout = new QVBoxLayout(m_widget);
    layout->addWidget(m_list);
    layout->addLayout(row);
    layout->addWidget(m_conflict);

    for (const QString& id : qAsConst(m_ids)) {
        m_shortcuts.insert(id, lookOf(id)->shortcut());
        new QTreeWidgetItem(m_list, {nameOf(lookOf(id))});
        fillRow(m_list->topLevelItemCount() - 1);
    }
    m_list->resizeColumnToContents(0);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &ShortcutsPage::showCurrent);
    connect(m_edit, &QKeySequenceEdit::keySequenceChanged, this, &ShortcutsPage::edit);
    connect(m_clear, &QPushButton::clicked, m_edit, &QKeySequenceEdit::clear);
    connect(m_reset, &QPushButton::clicked, this,
        [this] { m_edit->setKeySequence(ownChoice(currentId())); });
    m_list->setCurrentItem(m_list->topLevelItem(0));
}

QString ShortcutsPage::currentId() const
{
    return m_ids.value(m_list->indexOfTopLevelItem(m_list->currentItem()));
}

void ShortcutsPage::showCurrent()
{
    const QSignalBlocker isNoChange(m_edit);
    m_edit->setKeySequence(m_shortcuts.value(currentId()));
    tellConflict();
}

void ShortcutsPage::edit(const QKeySequence& shortcut)
{
    m_shortcuts[currentId()] = shortcut;
    fillRow(static_cast<int>(m_ids.indexOf(currentId())));
    tellConflict();
}

void ShortcutsPage::fillRow(int row)
{
    QString keys = m_shortcuts.value(m_ids.at(row)).toString(QKeySequence::NativeText);
    // Keys have a direction of their own.
    if (QGuiApplication::isRightToLeft())
        keys = QChar(0x200e) + keys + QChar(0x200e);
    m_list->topLevelItem(row)->setText(1, keys);
}

// Two actions with the same keys would both be silent.
void ShortcutsPage::tellConflict()
{
    const QKeySequence shortcut = m_shortcuts.value(currentId());
    QStringList others;
    for (const QString& id : qAsConst(m_ids)) {
        if (id != currentId() && !shortcut.isEmpty() && m_shortcuts.value(id) == shortcut)
            others.append(nameOf(lookOf(id)));
    }
    for (const QAction* other : qAsConst(m_others)) {
        if (!shortcut.isEmpty() && other->shortcuts().contains(shortcut))
            others.append(nameOf(other));
    }
    m_conflict->setText(others.isEmpty()
            ? QString()
            : tr("%1 is the shortcut of %2 already; neither will work.")
                  .arg(shortcut.toString(QKeySequence::NativeText),
                      others.join(QStringLiteral(", "))));
    m_reset->setEnabled(shortcut != ownChoice(currentId()));
    m_clear->setEnabled(!shortcut.isEmpty());
}

void ShortcutsPage::apply()
{
    QSettings settings;
    for (const QString& id : qAsConst(m_ids)) {
        const QKeySequence shortcut = m_shortcuts.value(id);
        lookOf(id)->setShortcut(shortcut);
        if (shortcut == ownChoice(id))
            settings.remove(keyOf(id));
        else
            settings.setValue(keyOf(id), shortcut.toString(QKeySequence::PortableText));
    }
}
