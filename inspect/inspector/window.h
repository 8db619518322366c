// SPDX-License-Identifier: MIT
#pragma once

#include "pages.h"
#include "session.h"

#include <QMainWindow>

class QLabel;
class QMenu;

namespace Zentu {
class MdiArea;
}

namespace Zentu::Inspect {

class LinesPage;
class Picker;
class TryPage;

/**
 * The second window of a host. It is built with the library that it looks at: its pages are
 * documents, its menu entries proxies, its preferences pages of an options dialog.
 *
 * It does not keep the host from ending, and never takes the focus by itself.
 */
class Window : public QMainWindow
{
    Q_OBJECT

public:
    explicit Window(Session& session);

    /// Shows what a link names: the name of a page, a colon and what to select there.
    void go(const QUrl& link);
    void go(const QString& page, const QString& id);

    PageWindow* page(const QString& name) const;
    Picker* picker() const { return m_picker; }
    QLabel* answer() const { return m_answer; }

public Q_SLOTS:
    void showPreferences();
    void toggleRecording();

private:
    void makePages();
    void makeMenus();
    ProxyAction* makeProxy(const QString& text, const QKeySequence& key);
    void answerPick(QWidget* widget, const QPoint& position);
    void answerPlainAction(const QAction& action);
    /// Takes the pages to the one document that is active.
    void activate(PageWindow* page);

    Session& m_session;
    MdiArea* m_area;
    QLabel* m_answer;
    Picker* m_picker;
    QList<ProxyAction*> m_proxies;
    QAction* m_record;
    QMenu* m_pageMenu = nullptr;
};

} // namespace Zentu::Inspect
