// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

/// Says that a file has changed on disk and asks what to do about it.
class FileChangeBar : public QFrame
{
    Q_OBJECT

public:
    explicit FileChangeBar(QWidget* parent);

    /// Shows the bar; without the new text there is nothing to reload or to compare.
    void showChange(const QString& text, bool fileIsThere);
    /// Shows the bar with what differs.
    void showDifference(const QString& text);

Q_SIGNALS:
    void reloadRequested();
    void keepRequested();
    void differenceRequested();

private:
    QLabel* m_text;
    QPushButton* m_reload;
    QPushButton* m_difference;
};
