// SPDX-License-Identifier: MIT
#pragma once

#include "ievent_handler.h"

#include <QCoreApplication>

class QStatusBar;

/// Says in the status bar what happens to documents.
class StatusReporter : public Zentu::IEventHandler
{
    Q_DECLARE_TR_FUNCTIONS(StatusReporter)

public:
    explicit StatusReporter(QStatusBar* bar);

    void handleEvent(Zentu::IEvent* event) override;

private:
    QStatusBar* m_bar;
};
