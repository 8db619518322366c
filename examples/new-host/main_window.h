#pragma once

#include "status_line.h"

#include <QMainWindow>

class Note;

namespace Zentu {
class MdiArea;
}

/// The window: notes in the middle, and actions that follow the current one.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    Note* addNote(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createActions();
    void showPreferences();

    Zentu::MdiArea* m_area;
    StatusLine m_statusLine;
};
