#include "main_window.h"

#include <ZentuKit/CmdLineParser>
#include <ZentuKit/EventManager>
#include <ZentuKit/zentu_host.h>

#include <QApplication>

int main(int argc, char* argv[])
{
    // Before Qt looks for a display, so that help needs none.
    Zentu::CmdLineParser parser(QStringLiteral("@NAME@"));
    parser.setBrief(QStringLiteral("Keeps notes."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addOption(QStringLiteral("--title"), QStringLiteral("The title of the window."),
        QStringLiteral("text"));
    parser.addPositionalArgument(
        QStringLiteral("NOTE..."), QStringLiteral("Texts to begin with, a note each."));
    Zentu::processCommandLine(parser, argc, argv);

    // All options are the program's own; Qt is told what it needs by the environment.
    int qtArgc = 1;
    QApplication application(qtArgc, argv);
    QApplication::setApplicationName(QStringLiteral("@NAME@"));
    // The thread that asks for the bus first is the one in which it delivers.
    Zentu::EventManager::instance();

    MainWindow window;
    if (parser.isSet(QStringLiteral("title")))
        window.setWindowTitle(parser.getValue(QStringLiteral("title")));
    const QStringList texts = parser.positionalArguments();
    for (const QString& text : texts)
        window.addNote(text);
    window.show();
    return QApplication::exec();
}
