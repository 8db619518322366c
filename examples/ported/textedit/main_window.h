// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

#include <QMainWindow>

class Document;
class QComboBox;
class QFontComboBox;

/// The window: documents, and the actions and formats of the current one.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();

    bool open(const QString& path);
    void openNew();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    /// What is shown of an action of the documents.
    struct Look
    {
        const char* id;
        const char* text;
        QKeySequence key;
        const char* icon; ///< In the toolbar too, if it has one.
    };

    void createFileMenu();
    void createEditMenu();
    void createFormatMenu();
    void createFormatBar();
    void createHelpMenu();
    void addProxies(const QList<Look>& looks, QMenu* menu, QToolBar* bar);
    void add(Document* document);
    void chooseFile();
    Document* current() const;
    void showFormat();

    Zentu::ContextManager m_contexts;
    Zentu::ProxyActionManager m_proxies;
    Zentu::MdiArea* m_area;
    Zentu::DocumentNavigator* m_navigator;
    QToolBar* m_formats = nullptr;
    QComboBox* m_style = nullptr;
    QFontComboBox* m_font = nullptr;
    QComboBox* m_size = nullptr;
};
