// SPDX-License-Identifier: MIT
#include "inspector.h"

#include "own_lines.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>
#include <QWidget>

namespace Zentu::Inspect {

static QPointer<Inspector> s_current;

// The plug-in is made in the middle of the application's constructor: nothing but listening works.
Inspector::Inspector()
{
    s_current = this;
    // For a host that never enters the application's own loop, and so does not quit.
    qAddPostRoutine([] {
        if (s_current)
            s_current->close();
    });
    qApp->installEventFilter(this);
    connect(qApp, &QCoreApplication::aboutToQuit, this, &Inspector::close);
}

Inspector::~Inspector()
{
    close();
}

bool Inspector::eventFilter(QObject* watched, QEvent* event)
{
    const auto* const widget = qobject_cast<const QWidget*>(watched);
    if (event->type() == QEvent::Show && widget && widget->isWindow()
        && widget->windowType() == Qt::Window) {
        qApp->removeEventFilter(this);
        // Once the host's window is up, so that it is the one which is activated.
        QMetaObject::invokeMethod(this, &Inspector::open, Qt::QueuedConnection);
    }
    return false;
}

void Inspector::open()
{
    const OwnLines::Scope own;
    m_session = std::make_unique<Session>(m_listener);
    m_window = std::make_unique<Window>(*m_session);
    m_session->takeLines();
    m_window->show();
}

// Before the application is gone, whose windows do not outlive it.
void Inspector::close()
{
    const OwnLines::Scope own;
    m_window.reset();
    m_session.reset();
}

} // namespace Zentu::Inspect
