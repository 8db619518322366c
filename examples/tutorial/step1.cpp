// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMainWindow>

class Window : public QMainWindow
{
public:
    Window()
    {
        setWindowTitle(QStringLiteral("Notes"));
        resize(640, 480);
    }
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Window window;
    window.show();
    return QApplication::exec();
}
