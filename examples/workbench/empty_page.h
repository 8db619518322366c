// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QVBoxLayout;

/// What is shown while there is no document: how to open one, and those that were open last.
class EmptyPage : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyPage(QWidget* parent);

    void showRecentFiles(const QStringList& files);

Q_SIGNALS:
    void chosen(const QString& path);

private:
    QWidget* createLink(const QString& path);

    QWidget* m_recent;
    QVBoxLayout* m_links;
};
