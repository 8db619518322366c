// SPDX-License-Identifier: MIT
#pragma once

#include "listener.h"
#include "session.h"
#include "window.h"

#include <QObject>

#include <memory>

namespace Zentu::Inspect {

/// The inspector of the process: it listens at once, and shows its window with the host's first
/// one.
class Inspector : public QObject
{
    Q_OBJECT

public:
    Inspector();
    ~Inspector() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Null until the host has shown a window.
    Window* window() const { return m_window.get(); }

private:
    void open();
    void close();

    Listener m_listener;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<Window> m_window;
};

} // namespace Zentu::Inspect
