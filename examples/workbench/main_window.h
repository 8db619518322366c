// SPDX-License-Identifier: MIT
#pragma once

#include "document_opener.h"

#include <QMainWindow>
#include <QString>

#include <memory>

class Document;
class EmptyPage;
class NoticeBar;
class QLabel;
class QStackedWidget;
class StatusReporter;

namespace Zentu {
class DocumentNavigator;
class IMdiSubWindow;
class MdiArea;
} // namespace Zentu

/// The window: documents in the middle, menus and actions around them.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    void open(const QStringList& files);

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void createCentre();
    void createNavigator();
    void fillMenus();
    void showDocument(Document* document);
    void onCurrentDocumentChanged(Zentu::IMdiSubWindow* current);
    void updateCentre();
    void updateStatus();
    void updateTitle();
    void chooseFiles();
    void showPreferences();
    void restore();

    Zentu::MdiArea* m_area = nullptr;
    Zentu::DocumentNavigator* m_navigator = nullptr;
    QStackedWidget* m_centre = nullptr;
    EmptyPage* m_empty = nullptr;
    QLabel* m_status = nullptr;
    std::unique_ptr<StatusReporter> m_statusReporter;
    DocumentOpener m_opener;
};
