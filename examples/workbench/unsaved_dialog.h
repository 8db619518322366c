// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QList>

class Document;
class QListWidget;

/// Asks once what becomes of the changes of several documents.
class UnsavedDialog : public QDialog
{
    Q_OBJECT

public:
    UnsavedDialog(const QList<Document*>& documents, QWidget* parent);

    /// Asks, if any of the documents has changes, and does what is answered. False if nothing may
    /// be closed: the user cancelled, or a document could not be saved.
    static bool mayClose(const QList<Document*>& documents, QWidget* parent);

private:
    bool saveChosen();
    void dropAll();

    QList<Document*> m_documents;
    QListWidget* m_list;
};
