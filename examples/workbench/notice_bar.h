// SPDX-License-Identifier: MIT
#pragma once

#include "ievent_handler.h"

#include <QFrame>
#include <QStringList>

class QLabel;

/// Shows above the documents which files could not be opened, until it is dismissed.
class NoticeBar : public QFrame, public Zentu::IEventHandler
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget* parent);

    void handleEvent(Zentu::IEvent* event) override;

private:
    QLabel* m_text;
    QStringList m_messages;
};
