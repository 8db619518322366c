// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

#include <QMainWindow>

class Document;

/// The window: documents, and the actions of the current one. Several can be open at once.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();

    void open(const QString& path);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createFileMenu();
    void createEditMenu();
    void createOtherMenus();
    QMenu* createRecentMenu();
    static void add(QAction* action, const QString& tip, QKeySequence::StandardKey keys,
        const QString& icon, const QList<QWidget*>& places);
    void addProxy(const QString& id, const QString& text, const QString& tip,
        QKeySequence::StandardKey keys, const QString& icon, const QList<QWidget*>& places);
    Document* createDocument();
    void chooseFile();
    void remember(const QString& path);
    void restore();

    Zentu::ContextManager m_contexts;
    Zentu::ProxyActionManager m_proxies;
    Zentu::MdiArea* m_area;
    Zentu::DocumentNavigator* m_navigator;
    QMenu* m_recent = nullptr;
};
