// SPDX-License-Identifier: MIT
//
// Has pages call back into their dialog at every moment, and compares what comes of it with a model
// of its steps.

#include "option_dlg.h"

#include "recorder.h"
#include "story.h"

#include <QDialogButtonBox>
#include <QMap>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <memory>
#include <vector>

using namespace Support;
using Zentu::IOptionPage;

namespace {

/// The dialog by its steps. What is of Qt is Qt's here too.
class ModelDialog : public QDialog
{
public:
    ModelDialog(const QList<IOptionPage*>& pages, Story* story)
        : m_story(story)
    {
        auto* const layout = new QVBoxLayout(this);
        for (QWidget* widget : std::initializer_list<QWidget*>{m_tree, m_stack, m_buttons})
            layout->addWidget(widget);
        m_tree->setHeaderHidden(true);
        connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(m_buttons->button(QDialogButtonBox::Apply), &QPushButton::clicked, this,
            [this] { apply(); });
        connect(m_tree, &QTreeWidget::itemSelectionChanged, this, [this] { itemChanged(); });

        log("trace", "initialze catalog tree");
        QTreeWidgetItem root;
        for (IOptionPage* page : pages) {
            QTreeWidgetItem* const item = Zentu::createItemForCategory(&root, page->category());
            if (m_pageOf.contains(item))
                log("critical", "category already exists", page);
            else
                m_pageOf.insert(item, page);
        }
        m_tree->addTopLevelItems(root.takeChildren());
        m_tree->expandAll();
        m_tree->setFocus(Qt::OtherFocusReason);
        if (m_tree->topLevelItemCount() > 0)
            m_tree->setCurrentItem(m_tree->topLevelItem(0), 0, QItemSelectionModel::Select);
    }

    void accept() override
    {
        log("info", "accept");
        const QPointer<QObject> alive(this);
        apply();
        if (alive)
            QDialog::accept();
    }

    void reject() override
    {
        log("info", "reject");
        QDialog::reject();
    }

    void done(int result) override
    {
        m_story->say(trace(QLatin1String("dialog done ") + QString::number(result)));
        const QPointer<QObject> alive(this);
        const QList<IOptionPage*> pages = m_initialized;
        for (IOptionPage* page : pages) {
            log("trace", "finalize", page);
            page->finalize();
            if (!alive)
                return;
        }
        QDialog::done(result);
    }

private:
    void apply()
    {
        log("info", "apply");
        const QPointer<QObject> alive(this);
        const QList<IOptionPage*> pages = m_initialized;
        for (IOptionPage* page : pages) {
            log("trace", "apply for", page);
            page->apply();
            if (!alive)
                return;
        }
    }

    void itemChanged()
    {
        log("trace", "item changed");
        QTreeWidgetItem* item = m_tree->currentItem();
        while (item && !m_pageOf.contains(item))
            item = item->child(0);
        IOptionPage* const page = m_pageOf.value(item);
        if (!page)
            return;
        const QPointer<QObject> alive(this);
        if (!m_initialized.contains(page)) {
            log("trace", "initialize", page);
            page->initialize();
            if (!alive)
                return;
            m_initialized.append(page);
        }
        QWidget* const widget = page->pageWidget();
        if (!alive)
            return;
        if (!widget) {
            log("critical", "can not get page widget from", page);
            return;
        }
        if (widget == m_stack->currentWidget())
            return;
        log("trace", "show option page", page);
        m_stack->addWidget(widget);
        m_stack->setCurrentWidget(widget);
    }

    void log(const char* channel, const char* text, const IOptionPage* page = nullptr)
    {
        QString line =
            QString::fromLatin1(channel) + QLatin1String("|dialog ") + QString::fromLatin1(text);
        if (page)
            QDebug(&line) << "" << page;
        m_story->say(line.trimmed());
    }

    Story* m_story;
    QTreeWidget* m_tree = new QTreeWidget(this);
    QStackedWidget* m_stack = new QStackedWidget(this);
    QDialogButtonBox* m_buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply, this);
    QList<IOptionPage*> m_initialized;
    QMap<QTreeWidgetItem*, IOptionPage*> m_pageOf;
};

struct Library
{
    static QDialog* create(const QList<IOptionPage*>& pages, Story* /*story*/)
    {
        return new Zentu::OptionDialog(pages);
    }
};

struct Model
{
    static QDialog* create(const QList<IOptionPage*>& pages, Story* story)
    {
        return new ModelDialog(pages, story);
    }
};

template <typename Kind>
class Tale : public Story
{
public:
    explicit Tale(quint32 seed)
        : Story(seed)
    {
        m_recorder.onEntry([this](const Entry& entry) {
            static const QRegularExpression self(
                QStringLiteral("Zentu::OptionDialog\\(0x[0-9a-f]+\\)"));
            const QString line = asLine(entry).replace(self, QStringLiteral("dialog")).trimmed();
            if (!line.contains(QLatin1String("This plugin does not support")))
                say(line);
        });
        const int count = 2 + below(5);
        for (int i = 0; i < count; ++i) {
            m_pages.push_back(std::make_unique<Page>(this, anyPath()));
            call(m_pages.back().get(), QStringLiteral("page %1").arg(i));
        }
    }

private:
    class Page : public IOptionPage
    {
    public:
        Page(Tale* tale, const QStringList& path)
            : m_tale(tale)
            , m_path(path)
        {
        }

        QStringList category() const override { return m_path; }

        QWidget* pageWidget() override
        {
            m_tale->calledBack(QStringLiteral("widget"));
            // Nobody would own one that is made when the dialog is gone.
            if (!m_widget && m_tale->m_dialog && !m_tale->onceIn(4))
                m_widget = new QWidget(m_tale->m_dialog);
            return m_widget;
        }

        void initialize() override { m_tale->calledBack(QStringLiteral("initialize")); }
        void finalize() override { m_tale->calledBack(QStringLiteral("finalize")); }
        void apply() override { m_tale->calledBack(QStringLiteral("apply")); }

    private:
        Tale* m_tale;
        QStringList m_path;
        QPointer<QWidget> m_widget;
    };

    QStringList anyPath()
    {
        static const QString names[] = {QStringLiteral("a"), QStringLiteral("B"), QString()};
        QStringList path;
        for (int depth = onceIn(8) ? 0 : 1 + below(3); depth > 0; --depth)
            path.append(names[below(3)]);
        return path;
    }

    void select()
    {
        auto* const tree = m_dialog->findChild<QTreeWidget*>();
        QList<QTreeWidgetItem*> items;
        for (QTreeWidgetItemIterator it(tree); *it; ++it)
            items.append(*it);
        QTreeWidgetItem* const item = items.isEmpty() || onceIn(10)
            ? nullptr
            : items.at(below(static_cast<int>(items.size())));
        ++m_selections;
        tree->setCurrentItem(item);
        --m_selections;
    }

    void press(QDialogButtonBox::StandardButton button)
    {
        m_dialog->findChild<QDialogButtonBox*>()->button(button)->click();
    }

    void step() override
    {
        if (!m_dialog) {
            create();
            return;
        }
        const int what = below(14);
        switch (what) {
        case 0:
            // Qt itself reads what is deleted while an item is selected or a dialog is created.
            if (m_selections == 0)
                delete m_dialog;
            break;
        case 1:
        case 2:
            m_dialog->show();
            break;
        case 3:
            press(QDialogButtonBox::Ok);
            break;
        case 4:
            press(QDialogButtonBox::Cancel);
            break;
        case 5:
        case 6:
            press(QDialogButtonBox::Apply);
            break;
        case 7:
            m_dialog->done(below(3));
            break;
        case 8:
            m_dialog->close();
            break;
        case 9:
            m_dialog->hide();
            break;
        default:
            select();
            break;
        }
        if (m_dialog)
            sayWhatIsShown();
    }

    void create()
    {
        if (m_selections > 0)
            return;
        QList<IOptionPage*> pages;
        for (const auto& page : m_pages)
            pages.append(page.get());
        ++m_selections;
        QDialog* const dialog = Kind::create(pages, this);
        --m_selections;
        m_dialog = dialog;
    }

    void sayWhatIsShown()
    {
        const auto* const stack = m_dialog->findChild<QStackedWidget*>();
        const auto* const tree = m_dialog->findChild<QTreeWidget*>();
        say(QStringLiteral("visible %1, result %2, page %3 of %4, item %5")
                .arg(m_dialog->isVisible())
                .arg(m_dialog->result())
                .arg(stack->currentIndex())
                .arg(stack->count())
                .arg(tree->currentItem() ? tree->currentItem()->text(0) : QStringLiteral("none")));
    }

    void end() override { delete m_dialog; }

    Recorder m_recorder;
    std::vector<std::unique_ptr<Page>> m_pages;
    QPointer<QDialog> m_dialog;
    int m_selections = 0;
};

} // namespace

class OptionDialogRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callbacksEqualTheModel_data() { addSeeds(20); }
    void callbacksEqualTheModel();
};

void OptionDialogRandomTest::callbacksEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = Tale<Library>(seed).tell(100);
    QVERIFY(library.size() > 50);
    compareAccounts(library, Tale<Model>(seed).tell(100));
}

QTEST_MAIN(OptionDialogRandomTest)
#include "tst_option_dialog_random.moc"
