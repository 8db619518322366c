// SPDX-License-Identifier: MIT
#pragma once

#include "ievent_handler.h"

#include <QObject>
#include <QStringList>

class QAction;
class QMenu;

/// Keeps the files that were opened last and offers them in a menu.
class RecentFiles : public QObject, public Zentu::IEventHandler
{
    Q_OBJECT

public:
    RecentFiles(QMenu* menu, QObject* parent);

    static QStringList files();

    void handleEvent(Zentu::IEvent* event) override;

Q_SIGNALS:
    /// There are other files than before.
    void changed(const QStringList& files);
    void chosen(const QString& path);

private:
    void setFiles(const QStringList& files);
    void fillMenu(const QStringList& files);
    void onTriggered(QAction* action);

    QMenu* m_menu;
};
