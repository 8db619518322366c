// SPDX-License-Identifier: MIT
#include "word_count.h"

#include "action_mgr.h"
#include "actions.h"
#include "events.h"
#include "ievent.h"
#include "ievent_handler.h"
#include "text_document.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QSet>
#include <QTextStream>

namespace {

/// Counts the words of all open text files.
class WordCount : public QObject, public Zentu::IEventHandler
{
    Q_DECLARE_TR_FUNCTIONS(WordCount)

public:
    explicit WordCount(QObject* parent)
        : QObject(parent)
    {
        QMenu* const menu = Zentu::ActionManager::instance()->getMenu(Ids::MenuTools);
        m_action = menu->addAction(tr("&Count Words"));
        m_action->setObjectName(QStringLiteral("tools.word_count"));
        m_action->setEnabled(false);
        connect(m_action, &QAction::triggered, this, &WordCount::showCount);
        subscribe(Events::DocumentOpened);
        subscribe(Events::DocumentClosed);
    }

    void handleEvent(Zentu::IEvent* event) override
    {
        const QString path = event->data().value(Events::Path).toString();
        if (event->data().value(Events::Kind) != TextDocument::Kind)
            return;
        if (event->type() == Events::DocumentOpened)
            m_paths.insert(path);
        else
            m_paths.remove(path);
        m_action->setEnabled(!m_paths.isEmpty());
    }

private:
    void showCount()
    {
        int words = 0;
        int files = 0;
        for (const QString& path : qAsConst(m_paths)) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly))
                continue;
            ++files;
            QTextStream stream(&file);
            QString word;
            while (!stream.atEnd()) {
                stream >> word;
                words += word.isEmpty() ? 0 : 1;
            }
        }
        QMessageBox::information(nullptr, tr("Count Words"),
            tr("%1 words in %n saved text file(s).", nullptr, files).arg(words));
    }

    QAction* m_action;
    QSet<QString> m_paths;
};

} // namespace

void addWordCount(QObject* parent)
{
    new WordCount(parent);
}
