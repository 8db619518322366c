// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "option_dlg.h"
#include "option_dlg_p.h"

#include <QDialogButtonBox>
#include <QHash>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>

#include <memory>

#if __has_include(<KPageDialog>)
#include <KPageDialog>
#define HAS_KPAGEDIALOG
#endif

namespace Bench {
namespace {

// Flat, every page is a top-level one; deep, it is the last of a path of eight names, which it
// shares with its neighbours as far as their numbers agree.
QStringList categoryOf(int number, bool deep)
{
    if (!deep)
        return {QStringLiteral("Page %1").arg(number)};
    QStringList path;
    for (int bits = 7; bits > 0; --bits)
        path.append(QStringLiteral("Group %1").arg(number >> bits));
    path.append(QStringLiteral("Page %1").arg(number));
    return path;
}

class Page : public Zentu::IOptionPage
{
public:
    Page(int number, bool deep)
        : path(categoryOf(number, deep))
    {
    }

    QStringList category() const override { return path; }
    QWidget* pageWidget() override { return widget; }
    void initialize() override { widget = new QLabel(path.last()); }
    void finalize() override { }
    void apply() override { }

private:
    QStringList path;
    QWidget* widget = nullptr;
};

using Pages = std::vector<std::unique_ptr<Page>>;

QList<Zentu::IOptionPage*> listOf(const Pages& pages)
{
    QList<Zentu::IOptionPage*> list;
    for (const auto& page : pages)
        list.append(page.get());
    return list;
}

/// The same dialog by hand: the form, a tree whose items are found by hash, the first page.
class HandDialog : public QDialog
{
    Q_OBJECT

public:
    explicit HandDialog(const QList<Zentu::IOptionPage*>& pages)
    {
        form.setupUi(this);
        setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
        QTreeWidget* const tree = form.catalog_tree;
        tree->setStyleSheet(QStringLiteral(
            "QTreeWidget {selection-background-color: #0078d7; }"
            "QTreeWidget::item { height: 22px; }"
            "QTreeWidget::item:selected { background-color: #0078d7; color: white; }"));
        connect(form.btn_box, &QDialogButtonBox::accepted, this, &QDialog::accept);
        connect(form.btn_box, &QDialogButtonBox::rejected, this, &QDialog::reject);
        connect(tree, &QTreeWidget::itemSelectionChanged, this, &HandDialog::showCurrent);

        QList<QTreeWidgetItem*> top;
        QHash<QString, QTreeWidgetItem*> items;
        for (Zentu::IOptionPage* page : pages) {
            QString path;
            QTreeWidgetItem* parent = nullptr;
            for (const QString& name : page->category()) {
                path += QLatin1Char('/') + name;
                QTreeWidgetItem*& item = items[path];
                if (!item) {
                    item = new QTreeWidgetItem(QStringList(name));
                    if (parent)
                        parent->addChild(item);
                    else
                        top.append(item);
                }
                parent = item;
            }
            pageOf.insert(parent, page);
        }
        tree->addTopLevelItems(top);
        tree->expandAll();
        tree->setFocus(Qt::OtherFocusReason);
        tree->setCurrentItem(tree->topLevelItem(0), 0, QItemSelectionModel::Select);
    }

private:
    void showCurrent()
    {
        QTreeWidgetItem* item = form.catalog_tree->currentItem();
        while (!pageOf.contains(item))
            item = item->child(0);
        Zentu::IOptionPage* const page = pageOf.value(item);
        page->initialize();
        form.stacked_widget->addWidget(page->pageWidget());
        form.stacked_widget->setCurrentWidget(page->pageWidget());
    }

    Zentu::Ui_OptionDialog form;
    QHash<QTreeWidgetItem*, Zentu::IOptionPage*> pageOf;
};

template <typename Dialog, bool Deep>
void build(benchmark::State& state)
{
    const auto prepare = [&] {
        Pages pages;
        for (int i = 0; i < static_cast<int>(state.range(0)); ++i)
            pages.push_back(std::make_unique<Page>(i, Deep));
        return std::make_pair(std::move(pages), std::unique_ptr<Dialog>());
    };
    repeat(state, prepare,
        [](auto& prepared) { prepared.second = std::make_unique<Dialog>(listOf(prepared.first)); });
}

#ifdef HAS_KPAGEDIALOG
// A dialog of KDE asks for all widgets at once.
template <bool Deep>
void buildKde(benchmark::State& state)
{
    const auto prepare = [&] {
        std::vector<std::pair<QString, QWidget*>> pages;
        for (int i = 0; i < static_cast<int>(state.range(0)); ++i) {
            const QString name = categoryOf(i, false).last();
            pages.emplace_back(name, new QLabel(name));
        }
        return std::make_pair(std::move(pages), std::unique_ptr<KPageDialog>());
    };
    repeat(state, prepare, [](auto& prepared) {
        prepared.second = std::make_unique<KPageDialog>();
        KPageDialog& dialog = *prepared.second;
        dialog.setFaceType(KPageDialog::Tree);
        std::vector<KPageWidgetItem*> items;
        for (const auto& [name, widget] : prepared.first) {
            // Deep, each page but the first is below the one with half its number.
            items.push_back(Deep && !items.empty()
                    ? dialog.addSubPage(items.at((items.size() - 1) / 2), widget, name)
                    : dialog.addPage(widget, name));
        }
    });
}
#endif

} // namespace

void addOptionRows()
{
    const std::vector<int> sizes = {10, 100, 1000};
    const std::string flat = "options/build, flat";
    add(flat, "zentu", sizes, build<Zentu::OptionDialog, false>)->UseManualTime();
    add(flat, "hand", sizes, build<HandDialog, false>)->UseManualTime();
    const std::string deep = "options/build, deep";
    add(deep, "zentu", sizes, build<Zentu::OptionDialog, true>)->UseManualTime();
    add(deep, "hand", sizes, build<HandDialog, true>)->UseManualTime();
#ifdef HAS_KPAGEDIALOG
    add(flat, "KPageDialog", sizes, buildKde<false>)->UseManualTime();
    add(deep, "KPageDialog", sizes, buildKde<true>)->UseManualTime();
#endif
}

} // namespace Bench

#include "options.moc"
