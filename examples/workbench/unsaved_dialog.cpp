// SPDX-License-Identifier: MIT
#include "unsaved_dialog.h"

#include "document.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

UnsavedDialog::UnsavedDialog(const QList<Document*>& documents, QWidget* parent)
    : QDialog(parent)
    , m_documents(documents)
    , m_list(new QListWidget(this))
{
    setObjectName(QStringLiteral("unsaved_dialog"));
    setWindowTitle(tr("Close"));
    m_list->setObjectName(QStringLiteral("unsaved_list"));
    m_list->setAccessibleName(tr("Documents with changes"));
    for (const Document* document : documents) {
        auto* item = new QListWidgetItem(document->name(), m_list);
        item->setToolTip(QDir::toNativeSeparators(document->path()));
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    auto* question =
        new QLabel(tr("Save the changes to these documents before closing? The changes to those "
                      "that are not ticked are discarded."),
            this);
    question->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Save | QDialogButtonBox::Discard | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Save)->setDefault(true);
    buttons->button(QDialogButtonBox::Discard)->setText(tr("&Discard All"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(question);
    layout->addWidget(m_list);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (saveChosen())
            accept();
        else
            reject();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::Discard), &QPushButton::clicked, this, [this] {
        dropAll();
        accept();
    });
}

bool UnsavedDialog::mayClose(const QList<Document*>& documents, QWidget* parent)
{
    QList<Document*> changed;
    std::copy_if(documents.cbegin(), documents.cend(), std::back_inserter(changed),
        [](const Document* document) { return document->hasChanges(); });
    return changed.isEmpty() || UnsavedDialog(changed, parent).exec() == Accepted;
}

// Nothing is discarded before all that is to be saved has been.
bool UnsavedDialog::saveChosen()
{
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked && !m_documents.at(row)->save())
            return false;
    }
    dropAll();
    return true;
}

void UnsavedDialog::dropAll()
{
    for (Document* document : qAsConst(m_documents))
        document->dropChanges();
}
