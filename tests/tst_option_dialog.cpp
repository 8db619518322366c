// SPDX-License-Identifier: MIT
#include "option_dlg.h"

#include "option_dlg_p.h"
#include "recorder.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTest>
#include <QTranslator>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

using namespace Support;
using namespace Zentu;

namespace {

/// A page that notes what the dialog calls.
class Page : public IOptionPage
{
public:
    Page(const char* path, QStringList* log)
        : m_path(QString::fromLatin1(path).split(QLatin1Char('/'), Qt::SkipEmptyParts))
        , m_log(log)
    {
    }

    QStringList category() const override
    {
        ++asked;
        if (throwsCategory)
            throw std::runtime_error("no category");
        return m_path;
    }

    QWidget* pageWidget() override
    {
        note("widget");
        if (!widget && hasWidget)
            widget = new QWidget;
        return widget;
    }

    void initialize() override
    {
        note("initialize");
        if (onInitialize)
            onInitialize();
    }

    void finalize() override
    {
        note("finalize");
        if (onFinalize)
            onFinalize();
    }

    void apply() override
    {
        note("apply");
        if (onApply)
            onApply();
    }

    bool hasWidget = true;
    bool throwsCategory = false;
    QPointer<QWidget> widget;
    std::function<void()> onInitialize;
    std::function<void()> onApply;
    std::function<void()> onFinalize;
    mutable int asked = 0;

    Page(const QStringList& path, QStringList* log)
        : m_path(path)
        , m_log(log)
    {
    }

private:
    void note(const char* call)
    {
        m_log->append(QLatin1String(call) + QLatin1Char(' ') + m_path.join(QLatin1Char('/')));
    }

    QStringList m_path;
    QStringList* m_log;
};

/// Translates the one text of the dialog, in its context only.
class Translator : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(
        const char* context, const char* text, const char* disambiguation, int n) const override
    {
        return qstrcmp(context, "Zentu::OptionDialog") == 0 && qstrcmp(text, "Options") == 0
                && !disambiguation && n == -1
            ? QStringLiteral("Einstellungen")
            : QString();
    }
};

QString print(const QWidget* widget)
{
    return printed(widget);
}

QString print(const IOptionPage* page)
{
    QString text;
    QDebug(&text) << page;
    return text.trimmed();
}

} // namespace

class OptionDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_log.clear(); }

    void hasThreeSlots();
    void privateObjectHasTwoSlots();
    void formIsBuiltAsItShould();
    void formKeepsTheNameOfADialogThatHasOne();
    void dialogChangesTheForm();
    void titleIsTranslated();
    void dialogWithoutPagesIsEmpty();
    void firstPageIsShownAtOnce();
    void treeKeepsTheOrderOfThePages();
    void groupShowsItsFirstPage();
    void takenCategoryIsReported();
    void pageWithoutCategoryIsNeverShown();
    void pageThatThrowsLeavesNoDialog();
    void pageIsInitializedAgainWhileItStillIsBeing();
    void pageIsInitializedOnceBeforeItsWidget();
    void pageIsNotAppliedWhileItIsInitialized();
    void pageIsTracedBeforeItIsShown();
    void treeIsFilledBeforeItHasTheFocus();
    void shownWidgetIsLeftAlone();
    void pageIsAddedAgainWhenItIsShownAgain();
    void pageWithoutWidgetIsReported();
    void groupWithoutPageShowsNothing();
    void okAppliesThenFinalizes();
    void cancelFinalizesOnly_data();
    void cancelFinalizesOnly();
    void applyStaysOpen();
    void doneIsTracedWithItsResult();
    void everyEndFinalizesAgain();
    void pagesMayChangeTheSelection();
    void finalizedPagesMayChangeTheSelection();
    void treeEqualsThatOfTheTreeFunctions();
    void pagesAreAskedOnceForTheTree();
    void endHasItsOrder();
    void formConnectsSlotsByTheirNames();
    void treeIsWalkedWithTheKeyboard();
    void pagesOutliveTheDialogTheirWidgetsDoNot();

private:
    std::unique_ptr<OptionDialog> create(const QList<Page*>& pages)
    {
        QList<IOptionPage*> list;
        for (Page* page : pages)
            list.append(page);
        return std::make_unique<OptionDialog>(list);
    }

    static QTreeWidget* tree(const std::unique_ptr<OptionDialog>& dialog)
    {
        return dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree"));
    }

    static QStackedWidget* stack(const std::unique_ptr<OptionDialog>& dialog)
    {
        return dialog->findChild<QStackedWidget*>(QStringLiteral("stacked_widget"));
    }

    static QPushButton* button(
        const std::unique_ptr<OptionDialog>& dialog, QDialogButtonBox::StandardButton which)
    {
        return dialog->findChild<QDialogButtonBox*>(QStringLiteral("btn_box"))->button(which);
    }

    QStringList m_log;
};

static QStringList list(std::initializer_list<const char*> texts)
{
    QStringList result;
    for (const char* text : texts)
        result.append(QString::fromLatin1(text));
    return result;
}

void OptionDialogTest::hasThreeSlots()
{
    const QMetaObject& meta = OptionDialog::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::OptionDialog");
    QCOMPARE(meta.superClass(), &QDialog::staticMetaObject);
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(names, list({"accept()", "reject()", "done(int)"}));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(OptionDialog), sizeof(QDialog) + sizeof(void*));
}

void OptionDialogTest::privateObjectHasTwoSlots()
{
    const QMetaObject& meta = _opt_dlg_private::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::_opt_dlg_private");
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    QCOMPARE(names, list({"onCatalogItemChanged()", "apply()"}));
}

void OptionDialogTest::formIsBuiltAsItShould()
{
    QDialog dialog;
    Ui_OptionDialog ui;
    ui.setupUi(&dialog);
    QCOMPARE(dialog.objectName(), QStringLiteral("Zentu__OptionDialog"));
    QCOMPARE(dialog.size(), QSize(700, 435));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Options"));
    QCOMPARE(dialog.layout(), ui.gridLayout);
    QCOMPARE(ui.gridLayout->objectName(), QStringLiteral("gridLayout"));

    QCOMPARE(ui.catalog_tree->objectName(), QStringLiteral("catalog_tree"));
    QCOMPARE(ui.catalog_tree->parent(), &dialog);
    QCOMPARE(ui.catalog_tree->headerItem()->text(0), QString());
    QCOMPARE(ui.catalog_tree->maximumSize(), QSize(180, QWIDGETSIZE_MAX));
    QCOMPARE(ui.catalog_tree->textElideMode(), Qt::ElideNone);
    QVERIFY(ui.catalog_tree->isHeaderHidden());

    QCOMPARE(ui.btn_box->objectName(), QStringLiteral("btn_box"));
    QCOMPARE(ui.btn_box->parent(), &dialog);
    QCOMPARE(ui.btn_box->orientation(), Qt::Horizontal);
    QCOMPARE(ui.btn_box->standardButtons(),
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply);

    QCOMPARE(ui.stacked_widget->objectName(), QStringLiteral("stacked_widget"));
    QCOMPARE(ui.stacked_widget->parent(), &dialog);
    QCOMPARE(ui.stacked_widget->frameShape(), QFrame::StyledPanel);
    QCOMPARE(ui.stacked_widget->frameShadow(), QFrame::Sunken);
    QCOMPARE(ui.stacked_widget->currentIndex(), -1);

    const auto position = [&](QWidget* widget) {
        int row = -1;
        int column = -1;
        int rows = -1;
        int columns = -1;
        ui.gridLayout->getItemPosition(
            ui.gridLayout->indexOf(widget), &row, &column, &rows, &columns);
        return QList<int>({row, column, rows, columns});
    };
    QCOMPARE(position(ui.catalog_tree), QList<int>({0, 0, 1, 1}));
    QCOMPARE(position(ui.btn_box), QList<int>({1, 0, 1, 2}));
    QCOMPARE(position(ui.stacked_widget), QList<int>({0, 1, 1, 1}));
    QCOMPARE(sizeof ui, 4 * sizeof(void*));
}

void OptionDialogTest::formKeepsTheNameOfADialogThatHasOne()
{
    QDialog dialog;
    dialog.setObjectName(QStringLiteral("own"));
    Ui_OptionDialog ui;
    ui.setupUi(&dialog);
    QCOMPARE(dialog.objectName(), QStringLiteral("own"));
}

void OptionDialogTest::dialogChangesTheForm()
{
    QWidget parent;
    const OptionDialog dialog({}, &parent);
    QCOMPARE(dialog.parent(), &parent);
    QCOMPARE(dialog.objectName(), QString());
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    QCOMPARE(dialog.findChild<QTreeWidget*>()->styleSheet(),
        QStringLiteral("QTreeWidget {selection-background-color: #0078d7; }"
                       "QTreeWidget::item { height: 22px; }"
                       "QTreeWidget::item:selected { background-color: #0078d7; color: white; }"));
    QCOMPARE(dialog.focusWidget(), dialog.findChild<QTreeWidget*>());
}

void OptionDialogTest::titleIsTranslated()
{
    Translator translator;
    QCoreApplication::installTranslator(&translator);
    const OptionDialog dialog({});
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Einstellungen"));
    // The title is not repeated, as it would go stale with a title of the host.
    QCOMPARE(dialog.findChild<QTreeWidget*>()->accessibleName(), QString());
}

void OptionDialogTest::dialogWithoutPagesIsEmpty()
{
    Recorder recorder;
    const auto dialog = create({});
    QCOMPARE(recorder.take(),
        QStringList(trace(print(dialog.get()) + QLatin1String(" initialze catalog tree "))));
    QCOMPARE(tree(dialog)->topLevelItemCount(), 0);
    QCOMPARE(stack(dialog)->count(), 0);
    dialog->show();
    recorder.clear();
    QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({info(name + QLatin1String(" accept")), info(name + QLatin1String(" apply")),
            trace(name + QLatin1String(" done 1 "))}));
}

void OptionDialogTest::firstPageIsShownAtOnce()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    Recorder recorder;
    const auto dialog = create({&a, &b});
    QCOMPARE(m_log, list({"initialize A", "widget A"}));
    QCOMPARE(stack(dialog)->currentWidget(), a.widget.data());
    QCOMPARE(tree(dialog)->currentItem(), tree(dialog)->topLevelItem(0));
    QVERIFY(tree(dialog)->topLevelItem(0)->isSelected());
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({trace(name + QLatin1String(" initialze catalog tree ")),
            trace(name + QLatin1String(" item changed ")),
            trace(name + QLatin1String(" initialize ") + print(&a) + QLatin1Char(' ')),
            trace(name + QLatin1String(" show option page ") + print(&a) + QLatin1Char(' '))}));
}

void OptionDialogTest::treeKeepsTheOrderOfThePages()
{
    Page z("Z", &m_log);
    Page fonts("General/Fonts", &m_log);
    Page a("A", &m_log);
    Page colors("General/Colors", &m_log);
    const auto dialog = create({&z, &fonts, &a, &colors});
    const QTreeWidget* const items = tree(dialog);
    QCOMPARE(items->topLevelItemCount(), 3);
    QCOMPARE(items->topLevelItem(0)->text(0), QStringLiteral("Z"));
    QCOMPARE(items->topLevelItem(2)->text(0), QStringLiteral("A"));
    QTreeWidgetItem* const general = items->topLevelItem(1);
    QCOMPARE(general->text(0), QStringLiteral("General"));
    QCOMPARE(general->childCount(), 2);
    QCOMPARE(general->child(0)->text(0), QStringLiteral("Fonts"));
    QCOMPARE(general->child(1)->text(0), QStringLiteral("Colors"));
    QVERIFY(general->isExpanded());
}

void OptionDialogTest::groupShowsItsFirstPage()
{
    Page deep("General/Fonts/Deep", &m_log);
    Page colors("General/Colors", &m_log);
    const auto dialog = create({&deep, &colors});
    QCOMPARE(stack(dialog)->currentWidget(), deep.widget.data());
    QTreeWidgetItem* const general = tree(dialog)->topLevelItem(0);
    tree(dialog)->setCurrentItem(general->child(1));
    QCOMPARE(stack(dialog)->currentWidget(), colors.widget.data());
    tree(dialog)->setCurrentItem(general->child(0));
    QCOMPARE(stack(dialog)->currentWidget(), deep.widget.data());
    QCOMPARE(m_log.count(QStringLiteral("initialize General/Fonts/Deep")), 1);
}

void OptionDialogTest::takenCategoryIsReported()
{
    Page first("A/B", &m_log);
    Page second("A/B", &m_log);
    Page parent("A", &m_log);
    Recorder recorder;
    const auto dialog = create({&first, &second, &parent});
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take().mid(0, 2),
        QStringList({trace(name + QLatin1String(" initialze catalog tree ")),
            critical(name + QLatin1String(" category already exists ") + print(&second))}));
    QCOMPARE(stack(dialog)->currentWidget(), parent.widget.data());
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(0)->child(0));
    QCOMPARE(stack(dialog)->currentWidget(), first.widget.data());
    QVERIFY(!second.widget);
}

void OptionDialogTest::pageWithoutCategoryIsNeverShown()
{
    Page none("", &m_log);
    Page also("", &m_log);
    Page a("A", &m_log);
    Recorder recorder;
    const auto dialog = create({&none, &a, &also});
    QCOMPARE(tree(dialog)->topLevelItemCount(), 1);
    QCOMPARE(m_log, list({"initialize A", "widget A"}));
    // Of two pages without a category, the second meets the first at the root.
    QCOMPARE(recorder.take().filter(QStringLiteral("critical|")).size(), 1);
    dialog->accept();
    QVERIFY(m_log.filter(QStringLiteral("apply")).contains(QStringLiteral("apply A")));
    QCOMPARE(m_log.filter(QStringLiteral("apply")).size(), 1);
}

// What is left over is found by the sanitizer.
void OptionDialogTest::pageThatThrowsLeavesNoDialog()
{
    Page first("First", &m_log);
    Page second("Second", &m_log);
    second.throwsCategory = true;
    QWidget window;
    QVERIFY_EXCEPTION_THROWN(OptionDialog({&first, &second}, &window), std::runtime_error);
    QVERIFY(window.children().isEmpty());
    QCOMPARE(m_log, QStringList());
}

void OptionDialogTest::pageIsInitializedAgainWhileItStillIsBeing()
{
    Page first("First", &m_log);
    Page second("Second", &m_log);
    OptionDialog dialog({&first, &second});
    auto* const tree = dialog.findChild<QTreeWidget*>();
    second.onInitialize = [&] {
        second.onInitialize = {};
        tree->setCurrentItem(tree->topLevelItem(0));
        tree->setCurrentItem(tree->topLevelItem(1));
    };
    m_log.clear();
    tree->setCurrentItem(tree->topLevelItem(1));
    dialog.reject();
    QCOMPARE(m_log.filter(QStringLiteral("initialize")).size(), 2);
    QCOMPARE(m_log.filter(QStringLiteral("finalize Second")).size(), 2);
}

void OptionDialogTest::pageIsInitializedOnceBeforeItsWidget()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    m_log.clear();
    Recorder recorder;
    QStringList atTheLines;
    recorder.onEntry([&](const Entry&) { atTheLines.append(QString::number(m_log.size())); });
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1));
    recorder.onEntry({});
    QCOMPARE(m_log, list({"initialize B", "widget B"}));
    // item changed, initialize, show: before anything, before initialize(), after pageWidget().
    QCOMPARE(atTheLines, list({"0", "0", "2"}));
    QCOMPARE(stack(dialog)->currentWidget(), b.widget.data());
}

void OptionDialogTest::pageIsNotAppliedWhileItIsInitialized()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    b.onInitialize = [&] { button(dialog, QDialogButtonBox::Apply)->click(); };
    m_log.clear();
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1));
    QCOMPARE(m_log, list({"initialize B", "apply A", "widget B"}));
}

void OptionDialogTest::pageIsTracedBeforeItIsShown()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    const QString line = print(dialog.get()) + QLatin1String(" show option page ") + print(&b);
    QList<int> pages;
    Recorder recorder;
    recorder.onEntry([&](const Entry& entry) {
        if (entry.text.startsWith(line))
            pages.append(stack(dialog)->count());
    });
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1));
    QCOMPARE(pages, QList<int>{1});
    QCOMPARE(stack(dialog)->count(), 2);
}

void OptionDialogTest::treeIsFilledBeforeItHasTheFocus()
{
    QList<const QWidget*> focused;
    Recorder recorder;
    recorder.onEntry([&](const Entry&) {
        for (const QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<const QDialog*>(widget))
                focused.append(widget->focusWidget());
        }
    });
    const OptionDialog dialog({});
    QCOMPARE(focused, QList<const QWidget*>{nullptr});
    QVERIFY(dialog.focusWidget());
}

void OptionDialogTest::shownWidgetIsLeftAlone()
{
    Page a("A", &m_log);
    const auto dialog = create({&a});
    dialog->setObjectName(QStringLiteral("dialog"));
    m_log.clear();
    Recorder recorder;
    tree(dialog)->clearSelection();
    QCOMPARE(
        recorder.take(), QStringList(trace(print(dialog.get()) + QLatin1String(" item changed "))));
    QCOMPARE(m_log, list({"widget A"}));
    QCOMPARE(stack(dialog)->count(), 1);
}

void OptionDialogTest::pageIsAddedAgainWhenItIsShownAgain()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1));
    QCOMPARE(stack(dialog)->indexOf(a.widget), 0);
    Recorder recorder;
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(0));
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({trace(name + QLatin1String(" item changed ")),
            trace(name + QLatin1String(" show option page ") + print(&a) + QLatin1Char(' '))}));
    QCOMPARE(stack(dialog)->currentWidget(), a.widget.data());
    // Added anew, it comes behind the others.
    QVERIFY(stack(dialog)->indexOf(a.widget) > stack(dialog)->indexOf(b.widget)
        || stack(dialog)->count() > 2);
}

void OptionDialogTest::pageWithoutWidgetIsReported()
{
    Page a("A", &m_log);
    Page none("None", &m_log);
    none.hasWidget = false;
    const auto dialog = create({&a, &none});
    dialog->setObjectName(QStringLiteral("dialog"));
    Recorder recorder;
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1));
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({trace(name + QLatin1String(" item changed ")),
            trace(name + QLatin1String(" initialize ") + print(&none) + QLatin1Char(' ')),
            critical(name + QLatin1String(" can not get page widget from ") + print(&none))}));
    QCOMPARE(stack(dialog)->currentWidget(), a.widget.data());
    m_log.clear();
    dialog->accept();
    QCOMPARE(m_log, list({"apply A", "apply None", "finalize A", "finalize None"}));
}

void OptionDialogTest::groupWithoutPageShowsNothing()
{
    Page a("A", &m_log);
    const auto dialog = create({&a});
    auto* group = new QTreeWidgetItem(tree(dialog), QStringList(QStringLiteral("group")));
    new QTreeWidgetItem(group, QStringList(QStringLiteral("child")));
    Recorder recorder;
    m_log.clear();
    tree(dialog)->setCurrentItem(group);
    QCOMPARE(
        recorder.take(), QStringList(trace(print(dialog.get()) + QLatin1String(" item changed "))));
    QVERIFY(m_log.isEmpty());
    QCOMPARE(stack(dialog)->currentWidget(), a.widget.data());
}

void OptionDialogTest::okAppliesThenFinalizes()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    Page c("C", &m_log);
    const auto dialog = create({&a, &b, &c});
    dialog->setObjectName(QStringLiteral("dialog"));
    tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(2));
    dialog->show();
    m_log.clear();
    Recorder recorder;
    QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    QVERIFY(!dialog->isVisible());
    QCOMPARE(dialog->result(), static_cast<int>(QDialog::Accepted));
    QCOMPARE(m_log, list({"apply A", "apply C", "finalize A", "finalize C"}));
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({info(name + QLatin1String(" accept")), info(name + QLatin1String(" apply")),
            trace(name + QLatin1String(" apply for ") + print(&a) + QLatin1Char(' ')),
            trace(name + QLatin1String(" apply for ") + print(&c) + QLatin1Char(' ')),
            trace(name + QLatin1String(" done 1 ")),
            trace(name + QLatin1String(" finalize ") + print(&a) + QLatin1Char(' ')),
            trace(name + QLatin1String(" finalize ") + print(&c) + QLatin1Char(' '))}));
}

void OptionDialogTest::cancelFinalizesOnly_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way : {"cancel", "escape", "window"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void OptionDialogTest::cancelFinalizesOnly()
{
    QFETCH(QString, way);
    Page a("A", &m_log);
    const auto dialog = create({&a});
    dialog->setObjectName(QStringLiteral("dialog"));
    dialog->show();
    m_log.clear();
    Recorder recorder;
    if (way == QLatin1String("cancel"))
        QTest::mouseClick(button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
    else if (way == QLatin1String("escape"))
        QTest::keyClick(dialog.get(), Qt::Key_Escape);
    else
        dialog->close();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(m_log, list({"finalize A"}));
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({info(name + QLatin1String(" reject")), trace(name + QLatin1String(" done 0 ")),
            trace(name + QLatin1String(" finalize ") + print(&a) + QLatin1Char(' '))}));
}

void OptionDialogTest::applyStaysOpen()
{
    Page a("A", &m_log);
    const auto dialog = create({&a});
    dialog->setObjectName(QStringLiteral("dialog"));
    dialog->show();
    m_log.clear();
    Recorder recorder;
    QTest::mouseClick(button(dialog, QDialogButtonBox::Apply), Qt::LeftButton);
    QVERIFY(dialog->isVisible());
    QCOMPARE(m_log, list({"apply A"}));
    const QString name = print(dialog.get());
    QCOMPARE(recorder.take(),
        QStringList({info(name + QLatin1String(" apply")),
            trace(name + QLatin1String(" apply for ") + print(&a) + QLatin1Char(' '))}));
    dialog->reject();
    QCOMPARE(m_log, list({"apply A", "finalize A"}));
}

void OptionDialogTest::doneIsTracedWithItsResult()
{
    const auto dialog = create({});
    dialog->setObjectName(QStringLiteral("dialog"));
    dialog->show();
    Recorder recorder;
    dialog->done(42);
    QCOMPARE(dialog->result(), 42);
    QCOMPARE(recorder.take(), QStringList(trace(print(dialog.get()) + QLatin1String(" done 42 "))));
}

void OptionDialogTest::everyEndFinalizesAgain()
{
    Page a("A", &m_log);
    const auto dialog = create({&a});
    m_log.clear();
    for (int i = 0; i < 2; ++i) {
        dialog->show();
        dialog->accept();
    }
    QCOMPARE(m_log, list({"apply A", "finalize A", "apply A", "finalize A"}));
}

void OptionDialogTest::pagesMayChangeTheSelection()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    a.onApply = [&] { tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1)); };
    m_log.clear();
    QTest::mouseClick(button(dialog, QDialogButtonBox::Apply), Qt::LeftButton);
    QCOMPARE(m_log, list({"apply A", "initialize B", "widget B"}));
}

void OptionDialogTest::finalizedPagesMayChangeTheSelection()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    a.onFinalize = [&] { tree(dialog)->setCurrentItem(tree(dialog)->topLevelItem(1)); };
    m_log.clear();
    dialog->done(0);
    QCOMPARE(m_log, list({"finalize A", "initialize B", "widget B"}));
}

static void compareItems(const QTreeWidgetItem* item, const QTreeWidgetItem* expected)
{
    QCOMPARE(item->childCount(), expected->childCount());
    for (int i = 0; i < item->childCount(); ++i) {
        QCOMPARE(item->child(i)->text(0), expected->child(i)->text(0));
        QCOMPARE(item->child(i)->columnCount(), expected->child(i)->columnCount());
        QCOMPARE(item->child(i)->type(), expected->child(i)->type());
        compareItems(item->child(i), expected->child(i));
    }
}

void OptionDialogTest::treeEqualsThatOfTheTreeFunctions()
{
    const QList<QStringList> paths = {{QStringLiteral("G"), QLatin1String(""), QStringLiteral("D")},
        {QStringLiteral("B")}, {QStringLiteral("G"), QString(), QStringLiteral(" x")},
        {QStringLiteral("g")}, {QStringLiteral("G"), QStringLiteral("D")},
        {QStringLiteral("B"), QStringLiteral("B"), QStringLiteral("B")}};
    QTreeWidgetItem expected;
    std::vector<std::unique_ptr<Page>> pages;
    QList<IOptionPage*> list;
    for (const QStringList& path : paths) {
        createItemForCategory(&expected, path);
        pages.push_back(std::make_unique<Page>(path, &m_log));
        list.append(pages.back().get());
    }
    const auto dialog = std::make_unique<OptionDialog>(list);
    compareItems(tree(dialog)->invisibleRootItem(), &expected);
    for (QTreeWidgetItemIterator it(tree(dialog)); *it; ++it)
        QVERIFY((*it)->isExpanded());
}

void OptionDialogTest::pagesAreAskedOnceForTheTree()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    const auto dialog = create({&a, &b});
    QCOMPARE(b.asked, 1);
}

void OptionDialogTest::endHasItsOrder()
{
    Page page("A", &m_log);
    const auto dialog = create({&page});
    dialog->setObjectName(QStringLiteral("dialog"));
    dialog->show();
    QStringList moments;
    Recorder recorder;
    const auto note = [&](const char* what) {
        moments.append(QStringLiteral("%1 %2 %3")
                           .arg(QLatin1String(what))
                           .arg(dialog->isVisible() ? 1 : 0)
                           .arg(recorder.entries().size()));
    };
    page.onApply = [&] { note("apply"); };
    page.onFinalize = [&] { note("finalize"); };
    dialog->accept();
    QCOMPARE(moments, list({"apply 1 3", "finalize 1 5"}));
    QVERIFY(!dialog->isVisible());
    const QString printed = print(dialog.get());
    QVERIFY(printed.endsWith(QLatin1String(", name=\"dialog\")")));
    QCOMPARE(recorder.take(),
        QStringList(
            {info(printed + QLatin1String(" accept")), info(printed + QLatin1String(" apply")),
                trace(printed + QLatin1String(" apply for ") + print(&page) + QLatin1Char(' ')),
                trace(printed + QLatin1String(" done 1 ")),
                trace(printed + QLatin1String(" finalize ") + print(&page) + QLatin1Char(' '))}));
}

/// A dialog with a slot that is named for a widget of the form.
class AutoConnected : public QDialog
{
    Q_OBJECT

public:
    int rejected = 0;

public Q_SLOTS:
    void on_btn_box_rejected() { ++rejected; }
};

void OptionDialogTest::formConnectsSlotsByTheirNames()
{
    AutoConnected dialog;
    Ui_OptionDialog ui;
    ui.setupUi(&dialog);
    Q_EMIT ui.btn_box->rejected();
    QCOMPARE(dialog.rejected, 1);
}

void OptionDialogTest::treeIsWalkedWithTheKeyboard()
{
    Page a("A", &m_log);
    Page b("Group/B", &m_log);
    Page c("Group/C", &m_log);
    const auto dialog = create({&a, &b, &c});
    dialog->show();
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    QVERIFY(tree(dialog)->hasFocus());
    QTest::keyClick(tree(dialog), Qt::Key_Down);
    QCOMPARE(stack(dialog)->currentWidget(), b.widget.data());
    QTest::keyClick(tree(dialog), Qt::Key_Down);
    QCOMPARE(stack(dialog)->currentWidget(), b.widget.data());
    QTest::keyClick(tree(dialog), Qt::Key_Down);
    QCOMPARE(stack(dialog)->currentWidget(), c.widget.data());
    QTest::keyClick(tree(dialog), Qt::Key_Home);
    QCOMPARE(stack(dialog)->currentWidget(), a.widget.data());
}

void OptionDialogTest::pagesOutliveTheDialogTheirWidgetsDoNot()
{
    Page a("A", &m_log);
    Page b("B", &m_log);
    b.widget = new QWidget;
    auto dialog = create({&a, &b});
    dialog.reset();
    QVERIFY(!a.widget);
    QVERIFY(b.widget);
    delete b.widget;
    QCOMPARE(a.category(), list({"A"}));
}

QTEST_MAIN(OptionDialogTest)
#include "tst_option_dialog.moc"
