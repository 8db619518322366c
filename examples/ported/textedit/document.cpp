// SPDX-License-Identifier: MIT
#include "document.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QMimeDatabase>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QTextDocumentWriter>
#include <QTextEdit>
#include <QTextList>

// Each Qt has a decoder that the other one has not.
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
#include <QStringDecoder>
static QString decoded(const QByteArray& data)
{
    return QStringDecoder::decoderForHtml(data).decode(data);
}
#else
#include <QTextCodec>
static QString decoded(const QByteArray& data)
{
    return Qt::codecForHtml(data)->toUnicode(data);
}
#endif

static const QString Left = QStringLiteral("align.left");
static const QString Center = QStringLiteral("align.center");
static const QString Right = QStringLiteral("align.right");
static const QString Justify = QStringLiteral("align.justify");

static QList<QPair<QString, Qt::Alignment>> alignments()
{
    return {{Left, Qt::AlignLeft | Qt::AlignAbsolute}, {Center, Qt::AlignHCenter},
        {Right, Qt::AlignRight | Qt::AlignAbsolute}, {Justify, Qt::AlignJustify}};
}

const QVector<ParagraphStyle>& Document::styles()
{
    using List = QTextListFormat;
    using Marker = QTextBlockFormat::MarkerType;
    constexpr auto None = List::ListStyleUndefined;
    static const QVector<ParagraphStyle> styles = {
        {QT_TR_NOOP("Standard")},
        {QT_TR_NOOP("Bullet List (Disc)"), List::ListDisc},
        {QT_TR_NOOP("Bullet List (Circle)"), List::ListCircle},
        {QT_TR_NOOP("Bullet List (Square)"), List::ListSquare},
        {QT_TR_NOOP("Task List (Unchecked)"), List::ListDisc, Marker::Unchecked},
        {QT_TR_NOOP("Task List (Checked)"), List::ListDisc, Marker::Checked},
        {QT_TR_NOOP("Ordered List (Decimal)"), List::ListDecimal},
        {QT_TR_NOOP("Ordered List (Alpha lower)"), List::ListLowerAlpha},
        {QT_TR_NOOP("Ordered List (Alpha upper)"), List::ListUpperAlpha},
        {QT_TR_NOOP("Ordered List (Roman lower)"), List::ListLowerRoman},
        {QT_TR_NOOP("Ordered List (Roman upper)"), List::ListUpperRoman},
        {QT_TR_NOOP("Heading 1"), None, Marker::NoMarker, 1},
        {QT_TR_NOOP("Heading 2"), None, Marker::NoMarker, 2},
        {QT_TR_NOOP("Heading 3"), None, Marker::NoMarker, 3},
        {QT_TR_NOOP("Heading 4"), None, Marker::NoMarker, 4},
        {QT_TR_NOOP("Heading 5"), None, Marker::NoMarker, 5},
        {QT_TR_NOOP("Heading 6"), None, Marker::NoMarker, 6},
    };
    return styles;
}

Document::Document(const Zentu::Managers& managers)
    : m_actions(QString(), managers)
    , m_editor(new QTextEdit)
{
    setWidget(m_editor);
    QFont font(QStringLiteral("Helvetica"));
    font.setStyleHint(QFont::SansSerif);
    m_editor->setFont(font);
    createFileActions();
    createEditActions();
    createFormatActions();
    connect(m_editor->document(), &QTextDocument::modificationChanged, this,
        &QWidget::setWindowModified);
    connect(m_editor, &QTextEdit::currentCharFormatChanged, this, &Document::showFormat);
    connect(m_editor, &QTextEdit::cursorPositionChanged, this, &Document::showFormat);
    setPath(QString());
    showFormat();
}

void Document::createFileActions()
{
    QAction* const saving = m_actions.add(QStringLiteral("file.save"), [this] { save(); });
    saving->setEnabled(false);
    connect(
        m_editor->document(), &QTextDocument::modificationChanged, saving, &QAction::setEnabled);
    m_actions.add(QStringLiteral("file.save_as"), [this] { saveAs(); });
    m_actions.add(QStringLiteral("file.print"), [this] { print(); });
    m_actions.add(QStringLiteral("file.preview"), [this] { preview(); });
    m_actions.add(QStringLiteral("file.pdf"), [this] { exportPdf(); });
}

QAction* Document::addIfAvailable(const QString& id, void (QTextEdit::*reaction)())
{
    QAction* const action = m_actions.add(id, m_editor, reaction);
    action->setEnabled(false);
    return action;
}

void Document::createEditActions()
{
    const QTextDocument* const text = m_editor->document();
    connect(text, &QTextDocument::undoAvailable,
        addIfAvailable(QStringLiteral("edit.undo"), &QTextEdit::undo), &QAction::setEnabled);
    connect(text, &QTextDocument::redoAvailable,
        addIfAvailable(QStringLiteral("edit.redo"), &QTextEdit::redo), &QAction::setEnabled);
    connect(m_editor, &QTextEdit::copyAvailable,
        addIfAvailable(QStringLiteral("edit.cut"), &QTextEdit::cut), &QAction::setEnabled);
    connect(m_editor, &QTextEdit::copyAvailable,
        addIfAvailable(QStringLiteral("edit.copy"), &QTextEdit::copy), &QAction::setEnabled);
    QAction* const paste = addIfAvailable(QStringLiteral("edit.paste"), &QTextEdit::paste);
    const auto update = [paste] {
        const QMimeData* const content = QApplication::clipboard()->mimeData();
        paste->setEnabled(content && content->hasText());
    };
    connect(QApplication::clipboard(), &QClipboard::dataChanged, paste, update);
    update();
}

template <typename Change>
void Document::addFormat(const QString& id, Change change)
{
    m_actions.addCheckable(id, false, [this, change](bool on) {
        QTextCharFormat format;
        change(&format, on);
        merge(format);
    });
}

void Document::createFormatActions()
{
    addFormat(QStringLiteral("format.bold"), [](QTextCharFormat* format, bool on) {
        format->setFontWeight(on ? QFont::Bold : QFont::Normal);
    });
    addFormat(QStringLiteral("format.italic"),
        [](QTextCharFormat* format, bool on) { format->setFontItalic(on); });
    addFormat(QStringLiteral("format.underline"),
        [](QTextCharFormat* format, bool on) { format->setFontUnderline(on); });
    m_actions.addExclusive(
        {Left, Center, Right, Justify}, Left, [this](const QString& id) { align(id); });
    m_actions.add(QStringLiteral("format.indent"), [this] { indent(1); });
    m_actions.add(QStringLiteral("format.unindent"), [this] { indent(-1); });
    m_actions.add(QStringLiteral("format.color"), [this] { chooseColor(); });
    m_actions.addCheckable(
        QStringLiteral("format.checked"), false, [this](bool on) { setStyle(on ? 5 : 4); });
}

bool Document::load(const QString& path)
{
    QFile file(path);
    if (!file.open(QFile::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    const QString html = decoded(bytes);
    if (Qt::mightBeRichText(html)) {
        m_editor->document()->setBaseUrl(QUrl::fromLocalFile(path).adjusted(QUrl::RemoveFilename));
        m_editor->setHtml(html);
    } else if (QMimeDatabase().mimeTypeForFileNameAndData(path, bytes).name()
        == QLatin1String("text/markdown")) {
        m_editor->setMarkdown(QString::fromUtf8(bytes));
    } else {
        m_editor->setPlainText(QString::fromUtf8(bytes));
    }
    setPath(path);
    return true;
}

void Document::setPath(const QString& path)
{
    m_path = path;
    m_editor->document()->setModified(false);
    setShortTitle(path.isEmpty() ? tr("untitled.txt") : QFileInfo(path).fileName());
    setWindowTitle(shortTitle() + QLatin1String("[*]"));
}

bool Document::save()
{
    if (m_path.isEmpty())
        return saveAs();
    const QString shown = QDir::toNativeSeparators(m_path);
    if (!QTextDocumentWriter(m_path).write(m_editor->document())) {
        Q_EMIT message(tr("Could not write to file \"%1\"").arg(shown));
        return false;
    }
    m_editor->document()->setModified(false);
    Q_EMIT message(tr("Wrote \"%1\"").arg(shown));
    return true;
}

// The file that the user chooses to write to; empty if none.
static QString chosenFile(
    QWidget* parent, const QString& title, const QStringList& types, const QString& suffix)
{
    QFileDialog dialog(parent, title);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setMimeTypeFilters(types);
    dialog.setDefaultSuffix(suffix);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

bool Document::saveAs()
{
    const QString path = chosenFile(this, tr("Save as..."),
        {QStringLiteral("text/plain"), QStringLiteral("application/vnd.oasis.opendocument.text"),
            QStringLiteral("text/markdown"), QStringLiteral("text/html")},
        QStringLiteral("odt"));
    if (path.isEmpty())
        return false;
    setPath(path);
    return save();
}

bool Document::mayClose()
{
    if (!isWindowModified())
        return true;
    const auto answer = QMessageBox::warning(this, QApplication::applicationName(),
        tr("The document has been modified.\nDo you want to save your changes?"),
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

void Document::print()
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, m_editor->textCursor().hasSelection());
    dialog.setWindowTitle(tr("Print Document"));
    if (dialog.exec() == QDialog::Accepted)
        m_editor->print(&printer);
}

void Document::preview()
{
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog dialog(&printer, this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, m_editor, &QTextEdit::print);
    dialog.exec();
}

void Document::exportPdf()
{
    const QString path = chosenFile(
        this, tr("Export PDF"), {QStringLiteral("application/pdf")}, QStringLiteral("pdf"));
    if (path.isEmpty())
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    m_editor->print(&printer);
    Q_EMIT message(tr("Exported \"%1\"").arg(QDir::toNativeSeparators(path)));
}

void Document::merge(const QTextCharFormat& format)
{
    QTextCursor cursor = m_editor->textCursor();
    if (!cursor.hasSelection())
        cursor.select(QTextCursor::WordUnderCursor);
    cursor.mergeCharFormat(format);
    m_editor->mergeCurrentCharFormat(format);
}

void Document::setFamily(const QString& family)
{
    QTextCharFormat format;
    format.setFontFamilies({family});
    merge(format);
}

void Document::setSize(qreal size)
{
    QTextCharFormat format;
    format.setFontPointSize(size);
    if (size > 0)
        merge(format);
}

void Document::setStyle(int index)
{
    const ParagraphStyle& style = styles().at(index);
    QTextCursor cursor = m_editor->textCursor();
    cursor.beginEditBlock();
    if (style.list == QTextListFormat::ListStyleUndefined)
        setHeading(&cursor, style.heading);
    else
        setList(&cursor, style);
    cursor.endEditBlock();
    showFormat();
}

void Document::setHeading(QTextCursor* cursor, int level)
{
    QTextBlockFormat block = cursor->blockFormat();
    block.setObjectIndex(-1); // In no list.
    block.setHeadingLevel(level);
    cursor->setBlockFormat(block);
    QTextCharFormat format;
    format.setFontWeight(level > 0 ? QFont::Bold : QFont::Normal);
    format.setProperty(QTextFormat::FontSizeAdjustment, level > 0 ? 4 - level : 0);
    cursor->select(QTextCursor::LineUnderCursor);
    cursor->mergeCharFormat(format);
    m_editor->mergeCurrentCharFormat(format);
}

void Document::setList(QTextCursor* cursor, const ParagraphStyle& style)
{
    const bool isTask = style.marker != QTextBlockFormat::MarkerType::NoMarker;
    const QTextList* const list = cursor->currentList();
    QTextBlockFormat block = cursor->blockFormat();
    QTextListFormat format = list ? list->format() : QTextListFormat();
    if (!list) {
        format.setIndent(block.indent() + 1);
        block.setIndent(0);
    }
    if (!list || !isTask)
        format.setStyle(style.list);
    block.setMarker(style.marker);
    cursor->setBlockFormat(block);
    cursor->createList(format);
}

void Document::indent(int amount)
{
    QTextCursor cursor = m_editor->textCursor();
    cursor.beginEditBlock();
    if (const QTextList* const list = cursor.currentList()) {
        QTextListFormat format = list->format();
        format.setIndent(format.indent() + amount);
        QTextCursor above = cursor;
        above.movePosition(QTextCursor::Up);
        QTextList* const neighbour = above.currentList();
        if (neighbour && neighbour->format().indent() == format.indent())
            neighbour->add(cursor.block());
        else
            cursor.createList(format);
    } else {
        QTextBlockFormat format = cursor.blockFormat();
        format.setIndent(format.indent() + amount);
        cursor.setBlockFormat(format);
    }
    cursor.endEditBlock();
}

void Document::align(const QString& id)
{
    for (const auto& alignment : alignments()) {
        if (alignment.first == id)
            m_editor->setAlignment(alignment.second);
    }
}

void Document::chooseColor()
{
    const QColor color = QColorDialog::getColor(m_editor->textColor(), this);
    if (!color.isValid())
        return;
    QTextCharFormat format;
    format.setForeground(color);
    merge(format);
    showColor(color);
}

QFont Document::currentFont() const
{
    return m_editor->currentCharFormat().font();
}

int Document::currentStyle() const
{
    const QTextCursor cursor = m_editor->textCursor();
    const QTextBlockFormat block = cursor.blockFormat();
    const bool isTask = block.marker() != QTextBlockFormat::MarkerType::NoMarker;
    const QTextList* const list = cursor.currentList();
    const auto found =
        std::find_if(styles().cbegin(), styles().cend(), [&](const ParagraphStyle& style) {
            if (!list)
                return style.list == QTextListFormat::ListStyleUndefined
                    && style.heading == block.headingLevel();
            return style.marker == block.marker()
                && (isTask || style.list == list->format().style());
        });
    return found == styles().cend() ? -1 : static_cast<int>(found - styles().cbegin());
}

void Document::showFormat()
{
    const QFont font = currentFont();
    m_actions.action(QStringLiteral("format.bold"))->setChecked(font.bold());
    m_actions.action(QStringLiteral("format.italic"))->setChecked(font.italic());
    m_actions.action(QStringLiteral("format.underline"))->setChecked(font.underline());
    m_actions.action(QStringLiteral("format.checked"))->setChecked(currentStyle() == 5);
    for (const auto& alignment : alignments()) {
        if (m_editor->alignment() & alignment.second & ~Qt::AlignAbsolute)
            m_actions.action(alignment.first)->setChecked(true);
    }
    showColor(m_editor->textColor());
    Q_EMIT formatChanged();
}

void Document::showColor(const QColor& color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    m_actions.action(QStringLiteral("format.color"))->setIcon(pixmap);
}
