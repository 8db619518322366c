// SPDX-License-Identifier: MIT
//
// A live view of the trace, opened like a file but under a name that no file has. This source file
// is all there is of it.

#include "action_mgr.h"
#include "actions.h"
#include "document.h"
#include "document_factory.h"
#include "document_opener.h"
#include "glyph_icon.h"
#include "trace_hub.h"
#include "wisp_recorder.h"
#include "zentu_host.h"

#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>

namespace {

const QString Kind = QStringLiteral("trace");
const QString Path = QStringLiteral("trace:live");
constexpr int MostLines = 5000;

/// The newest lines of the trace, those that a filter lets through.
class TraceDocument : public Document
{
public:
    TraceDocument()
        : Document(Kind, Path)
        , m_lines(new QPlainTextEdit)
        , m_filter(new QLineEdit)
    {
        m_lines->setObjectName(QStringLiteral("trace_lines"));
        m_lines->setAccessibleName(tr("Lines of the trace"));
        m_lines->setReadOnly(true);
        m_lines->setMaximumBlockCount(MostLines);
        m_lines->setLineWrapMode(QPlainTextEdit::NoWrap);
        m_lines->setFrameShape(QFrame::NoFrame);
        m_filter->setObjectName(QStringLiteral("trace_filter"));
        m_filter->setAccessibleName(tr("Filter"));
        m_filter->setPlaceholderText(tr("Show only lines with this text"));
        m_filter->setClearButtonEnabled(true);

        auto* view = new QWidget;
        auto* layout = new QVBoxLayout(view);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        layout->addWidget(m_filter);
        layout->addWidget(m_lines);
        view->setFocusProxy(m_filter);
        setWidget(view);
        setShortTitle(tr("Trace"));
        setWindowIcon(glyphIcon(QStringLiteral("utilities-log-viewer")));

        for (const wisp::Line& line : wisp::recordedLines())
            m_all.append(QString::fromStdString(line.text).trimmed());
        refill();
        connect(m_filter, &QLineEdit::textChanged, this, &TraceDocument::refill);
        // Queued: a line may come from any thread, and from the middle of anything in this one.
        if (TraceHub::instance())
            connect(TraceHub::instance(), &TraceHub::traced, this, &TraceDocument::add,
                Qt::QueuedConnection);
    }

    QPlainTextEdit* lines() const { return m_lines; }

private:
    void add(const QString& line)
    {
        m_all.append(line);
        if (m_all.size() > 2 * MostLines)
            m_all.erase(m_all.begin(), m_all.begin() + MostLines);
        if (matches(line))
            m_lines->appendPlainText(line);
    }

    bool matches(const QString& line) const
    {
        return line.contains(m_filter->text(), Qt::CaseInsensitive);
    }

    void refill()
    {
        m_lines->clear();
        for (const QString& line : qAsConst(m_all)) {
            if (matches(line))
                m_lines->appendPlainText(line);
        }
        // The newest line, from its beginning.
        m_lines->moveCursor(QTextCursor::StartOfBlock);
    }

    QPlainTextEdit* m_lines;
    QLineEdit* m_filter;
    QStringList m_all;
};

/// Opens the trace, from the tools menu.
class TraceFactory : public DocumentFactory
{
public:
    explicit TraceFactory(QObject* parent)
        : DocumentFactory(parent)
        , m_actions(Kind)
        , m_close(m_actions.add(Ids::Close, [this] { m_current->close(); }))
        , m_copy(m_actions.add(Ids::Copy, [this] { m_current->lines()->copy(); }))
        , m_selectAll(m_actions.add(Ids::SelectAll, [this] { m_current->lines()->selectAll(); }))
    {
        QMenu* const tools = Zentu::ActionManager::instance()->getMenu(Ids::MenuTools);
        QAction* const show = tools->addAction(tr("Show &Trace"));
        show->setObjectName(QStringLiteral("tools.trace"));
        connect(show, &QAction::triggered, this, [] { DocumentOpener::openPath(Path); });
    }

    QString kind() const override { return Kind; }
    int rank(const QString& path) const override { return path == Path ? 3 : 0; }
    Document* open(const QString& /*path*/, QString* /*error*/) const override
    {
        return new TraceDocument;
    }

    void setCurrent(Document* document) override
    {
        m_current = dynamic_cast<TraceDocument*>(document);
        for (QAction* action : {m_close, m_copy, m_selectAll})
            action->setEnabled(m_current);
        m_actions.setCurrent(m_current);
    }

private:
    Zentu::DocumentActions m_actions;
    QPointer<TraceDocument> m_current;
    QAction* m_close;
    QAction* m_copy;
    QAction* m_selectAll;
};

const DocumentKind s_kind([](QObject* parent) { return new TraceFactory(parent); });

} // namespace
