// SPDX-License-Identifier: MIT
#include "recent_files.h"

#include "events.h"
#include "ievent.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>

static const QString Key = QStringLiteral("files/recent");
static constexpr int MostFiles = 9;

RecentFiles::RecentFiles(QMenu* menu, QObject* parent)
    : QObject(parent)
    , m_menu(menu)
{
    subscribe(Events::DocumentOpened);
    connect(m_menu, &QMenu::triggered, this, &RecentFiles::onTriggered);
    fillMenu(files());
}

QStringList RecentFiles::files()
{
    return QSettings().value(Key).toStringList();
}

void RecentFiles::handleEvent(Zentu::IEvent* event)
{
    const QString path = event->data().value(Events::Path).toString();
    if (!QFileInfo(path).isFile())
        return;
    QStringList files = RecentFiles::files();
    files.removeAll(path);
    files.prepend(path);
    setFiles(files.mid(0, MostFiles));
}

void RecentFiles::setFiles(const QStringList& files)
{
    QSettings().setValue(Key, files);
    fillMenu(files);
    Q_EMIT changed(files);
}

void RecentFiles::fillMenu(const QStringList& files)
{
    m_menu->clear();
    m_menu->setEnabled(!files.isEmpty());
    int number = 0;
    for (const QString& path : files) {
        const QString name =
            QDir::toNativeSeparators(path).replace(QLatin1Char('&'), QLatin1String("&&"));
        m_menu->addAction(QStringLiteral("&%1 %2").arg(++number).arg(name))->setData(path);
    }
    if (files.isEmpty())
        return;
    m_menu->addSeparator();
    m_menu->addAction(tr("&Clear the List"));
}

// The action may be gone when this returns, as the list has changed.
void RecentFiles::onTriggered(QAction* action)
{
    const QString path = action->data().toString();
    if (path.isEmpty())
        setFiles({});
    else
        Q_EMIT chosen(path);
}
