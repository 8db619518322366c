// SPDX-License-Identifier: MIT
//
// What moc, uic and rcc make for the host.

#include "ui_greeting.h"

#include <ZentuKit/MdiArea>

#include <QApplication>
#include <QFile>

#include <cstdio>

class Greeting : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    Greeting()
        : Zentu::IMdiSubWindow(nullptr)
        , form(new Ui::Greeting)
    {
        form->setupUi(this);
    }
    ~Greeting() override { delete form; }

private:
    Ui::Greeting* form;
};

int greet(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    Greeting greeting;
    QFile file(QStringLiteral(":/greeting.ui"));
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    std::printf(
        "own %s, %s\n", greeting.metaObject()->className(), qUtf8Printable(greeting.windowTitle()));
    return 0;
}

#include "greeting.moc"
