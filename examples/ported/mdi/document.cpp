// SPDX-License-Identifier: MIT
#include "document.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QSaveFile>
#include <QTextEdit>
#include <QTextStream>

Document::Document(const Zentu::Managers& managers)
    : m_actions(QString(), managers)
    , m_editor(new QTextEdit)
{
    setWidget(m_editor);
    connect(m_editor->document(), &QTextDocument::modificationChanged, this,
        &QWidget::setWindowModified);

    m_actions.add(QStringLiteral("file.save"), [this] { save(); });
    m_actions.add(QStringLiteral("file.save_as"), [this] { saveAs(); });
    m_actions.add(QStringLiteral("edit.paste"), m_editor, &QTextEdit::paste);
    QAction* const cut = m_actions.add(QStringLiteral("edit.cut"), m_editor, &QTextEdit::cut);
    QAction* const copy = m_actions.add(QStringLiteral("edit.copy"), m_editor, &QTextEdit::copy);
    for (QAction* const action : {cut, copy}) {
        action->setEnabled(false);
        connect(m_editor, &QTextEdit::copyAvailable, action, &QAction::setEnabled);
    }
}

void Document::beginNew()
{
    static int number = 0;
    showName(tr("document%1.txt").arg(++number));
}

bool Document::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly | QFile::Text))
        return fail(tr("Cannot read file %1:\n%2.").arg(path, file.errorString()));
    m_editor->setPlainText(QTextStream(&file).readAll());
    setPath(path);
    return true;
}

bool Document::save()
{
    if (m_path.isEmpty())
        return saveAs();
    if (!write(m_path))
        return false;
    Q_EMIT saved(false);
    return true;
}

bool Document::saveAs()
{
    const QString path =
        QFileDialog::getSaveFileName(this, tr("Save As"), m_path.isEmpty() ? shortTitle() : m_path);
    if (path.isEmpty() || !write(path))
        return false;
    Q_EMIT saved(true);
    return true;
}

bool Document::write(const QString& path)
{
    QSaveFile file(path);
    if (file.open(QFile::WriteOnly | QFile::Text))
        QTextStream(&file) << m_editor->toPlainText();
    if (!file.commit())
        return fail(tr("Cannot write file %1:\n%2.")
                        .arg(QDir::toNativeSeparators(path), file.errorString()));
    setPath(path);
    return true;
}

void Document::setPath(const QString& path)
{
    m_path = QFileInfo(path).canonicalFilePath();
    m_editor->document()->setModified(false);
    showName(QFileInfo(path).fileName());
}

// The tab has no place for a mark, and would show its place holder.
void Document::showName(const QString& name)
{
    setWindowTitle(name + QLatin1String("[*]"));
    setShortTitle(name);
}

bool Document::fail(const QString& text)
{
    QMessageBox::warning(this, tr("MDI"), text);
    return false;
}

bool Document::mayClose()
{
    if (!isWindowModified())
        return true;
    const auto answer = QMessageBox::warning(this, tr("MDI"),
        tr("'%1' has been modified.\nDo you want to save your changes?").arg(shortTitle()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
    return answer == QMessageBox::Save ? save() : answer == QMessageBox::Discard;
}

void Document::closeEvent(QCloseEvent* event)
{
    if (mayClose())
        IMdiSubWindow::closeEvent(event);
    else
        event->ignore();
}
