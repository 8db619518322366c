#pragma once

#include <ZentuKit/IEventHandler>

class QStatusBar;

/// Says in the status bar what the bus tells; it knows neither the window nor the notes.
class StatusLine : public Zentu::IEventHandler
{
public:
    explicit StatusLine(QStatusBar* bar);

    void handleEvent(Zentu::IEvent* event) override;

private:
    QStatusBar* m_bar;
};
