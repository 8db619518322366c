// SPDX-License-Identifier: MIT
#include <ZentuKit/IOptionPage>
#include <ZentuKit/OptionDialog>

#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <QTreeWidget>

#include <cstdio>

class Page : public Zentu::IOptionPage
{
public:
    explicit Page(const QStringList& path)
        : m_path(path)
    {
    }

    QStringList category() const override { return m_path; }
    QWidget* pageWidget() override { return m_widget; }
    void initialize() override
    {
        m_widget = new QLabel(m_path.last());
        tell("is looked at for the first time");
    }
    void apply() override { tell("is applied"); }
    void finalize() override { tell("is done"); }

private:
    void tell(const char* what) const
    {
        std::printf("%s %s\n", qUtf8Printable(m_path.last()), what);
    }

    QStringList m_path;
    QWidget* m_widget = nullptr;
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Page font({QStringLiteral("Editor"), QStringLiteral("Font")});
    Page colors({QStringLiteral("Editor"), QStringLiteral("Colors")});
    Page network({QStringLiteral("Network")});
    Zentu::OptionDialog dialog({&font, &colors, &network});

    // Somebody looks at a page and presses OK.
    QTimer::singleShot(0, &dialog, [&dialog] {
        auto* const tree = dialog.findChild<QTreeWidget*>();
        tree->setCurrentItem(tree->topLevelItem(0)->child(1));
        dialog.accept();
    });
    std::printf("result %d\n", dialog.exec());
    return 0;
}
