// SPDX-License-Identifier: MIT
#include "option_dlg.h"

#include "recorder.h"

#include <QTest>
#include <QTreeWidgetItem>

using namespace Support;
using namespace Zentu;

namespace {

/// A page that is only a category.
class Page : public IOptionPage
{
public:
    explicit Page(const QStringList& path, QObject* parent = nullptr)
        : IOptionPage(parent)
        , m_path(path)
    {
    }

    QStringList category() const override { return m_path; }
    QWidget* pageWidget() override { return nullptr; }
    void initialize() override { }
    void finalize() override { }
    void apply() override { }

private:
    QStringList m_path;
};

/// An item that makes up its text.
class Computed : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    QVariant data(int column, int role) const override
    {
        return column == 0 && role == Qt::DisplayRole ? QVariant(QStringLiteral("computed"))
                                                      : QTreeWidgetItem::data(column, role);
    }
};

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString C = QStringLiteral("C");

} // namespace

class OptionPageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNothingOfItsOwn();
    void isPrintedWithItsCategory();
    void nullKeepsTheModeOfTheStream();
    void childIsFoundByItsText();
    void textIsAskedOfTheItem();
    void emptyPathIsTheRoot();
    void pathsShareTheirBeginnings();
    void emptyNamesMakeItems();
};

void OptionPageTest::hasNothingOfItsOwn()
{
    const QMetaObject& meta = IOptionPage::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::IOptionPage");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(IOptionPage), sizeof(QObject));
    QObject parent;
    QCOMPARE((new Page({}, &parent))->parent(), &parent);
}

void OptionPageTest::isPrintedWithItsCategory()
{
    const Page page({QStringLiteral("General"), QStringLiteral("Fo\"nts")});
    const QString expected = QLatin1String("IOptionPage(")
        + printed(static_cast<const void*>(&page))
        + QLatin1String(", category = \"General/Fo\\\"nts\") ");
    const IOptionPage* const pointer = &page;
    QString text;
    QDebug(&text) << pointer;
    QCOMPARE(text, expected);
    text.clear();
    QDebug(&text).nospace() << pointer << 1 << 2;
    QCOMPARE(text, expected + QLatin1String("1 2 "));
}

void OptionPageTest::nullKeepsTheModeOfTheStream()
{
    const IOptionPage* const none = nullptr;
    QString text;
    QDebug(&text) << none << 1;
    QCOMPARE(text, QStringLiteral("IOptionPage(0x0) 1 "));
    text.clear();
    QDebug(&text).nospace() << none << 1;
    QCOMPARE(text, QStringLiteral("IOptionPage(0x0)1"));
}

void OptionPageTest::childIsFoundByItsText()
{
    QTreeWidgetItem root;
    QVERIFY(!findChildItemByText(&root, A));
    auto* a = new QTreeWidgetItem(&root, QStringList(A));
    new QTreeWidgetItem(a, QStringList(C));
    auto* b = new QTreeWidgetItem(&root, QStringList({B, C}));
    new QTreeWidgetItem(&root, QStringList(B));
    QCOMPARE(findChildItemByText(&root, A), a);
    QCOMPARE(findChildItemByText(&root, B), b);
    for (const QString& text : {C, QStringLiteral("a"), QStringLiteral("A "), QString()})
        QVERIFY(!findChildItemByText(&root, text));
}

void OptionPageTest::textIsAskedOfTheItem()
{
    QTreeWidgetItem root;
    auto* item = new Computed(&root, QStringList(A));
    QCOMPARE(findChildItemByText(&root, QStringLiteral("computed")), item);
    QVERIFY(!findChildItemByText(&root, A));
}

void OptionPageTest::emptyPathIsTheRoot()
{
    QTreeWidgetItem root;
    QCOMPARE(createItemForCategory(&root, {}), &root);
    QCOMPARE(root.childCount(), 0);
}

void OptionPageTest::pathsShareTheirBeginnings()
{
    QTreeWidgetItem root;
    QTreeWidgetItem* const b = createItemForCategory(&root, {A, B});
    QTreeWidgetItem* const c = createItemForCategory(&root, {A, C});
    QCOMPARE(createItemForCategory(&root, {A, B}), b);
    QCOMPARE(root.childCount(), 1);
    QTreeWidgetItem* const a = root.child(0);
    QCOMPARE(a->text(0), A);
    QCOMPARE(a->columnCount(), 1);
    QCOMPARE(a->type(), static_cast<int>(QTreeWidgetItem::Type));
    QCOMPARE(a->childCount(), 2);
    QCOMPARE(a->child(0), b);
    QCOMPARE(a->child(1), c);
    QCOMPARE(createItemForCategory(&root, {A}), a);
    QTreeWidgetItem* const other = createItemForCategory(&root, {B});
    QCOMPARE(root.child(1), other);
}

void OptionPageTest::emptyNamesMakeItems()
{
    QTreeWidgetItem root;
    QTreeWidgetItem* const item = createItemForCategory(&root, {QString(), A});
    QCOMPARE(item->parent()->text(0), QString());
    QCOMPARE(createItemForCategory(&root, {QString()}), item->parent());
}

QTEST_MAIN(OptionPageTest)
#include "tst_option_page.moc"
