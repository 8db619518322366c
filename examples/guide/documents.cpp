// SPDX-License-Identifier: MIT
#include <ZentuKit/IMdiSubWindow>
#include <ZentuKit/MdiArea>

#include <QApplication>
#include <QCloseEvent>
#include <QTextEdit>

#include <cstdio>

class Letter : public Zentu::IMdiSubWindow
{
public:
    explicit Letter(const QString& path)
    {
        setWidget(new QTextEdit);
        // The tab shows the name, its tool tip the path.
        setWindowTitle(path);
        setShortTitle(path.section(QLatin1Char('/'), -1));
    }

    void currentChanged(bool current) override
    {
        std::printf("%s is %s\n", qUtf8Printable(shortTitle()), current ? "current" : "left");
    }

    bool isSaved = true;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (isSaved)
            IMdiSubWindow::closeEvent(event);
        else
            event->ignore();
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Zentu::MdiArea area;
    area.show();
    auto* const first = new Letter(QStringLiteral("/home/me/first.txt"));
    auto* const second = new Letter(QStringLiteral("/home/me/second.txt"));
    area.addWindow(first);
    area.addWindow(second);
    area.setCurrentSubWindow(first);

    second->isSaved = false;
    area.closeWindow(second);
    std::printf("after a refusal: %d\n", static_cast<int>(area.subWindows().size()));
    second->isSaved = true;
    area.closeWindow(second);
    std::printf("after that: %d\n", static_cast<int>(area.subWindows().size()));
    return 0;
}
