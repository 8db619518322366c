// SPDX-License-Identifier: MIT
#pragma once

#include "ievent_handler.h"

#include <QDockWidget>

class QTreeWidget;

/// Lists the events that the bus delivers.
class EventLog : public QDockWidget, public Zentu::IEventHandler
{
    Q_OBJECT

public:
    explicit EventLog(QWidget* parent);

    void handleEvent(Zentu::IEvent* event) override;

private:
    QTreeWidget* m_list;
};
