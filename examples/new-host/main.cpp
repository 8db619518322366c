#include "main_window.h"

#include <ZentuKit/CmdLineParser>
#include <ZentuKit/EventManager>

#include <QApplication>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("@NAME@"));
    // The thread that asks for the bus first is the one in which it delivers.
    Zentu::EventManager::instance();

    Zentu::CmdLineParser parser;
    parser.setBrief(QStringLiteral("Keeps notes."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addOption(QStringLiteral("--title"), QStringLiteral("The title of the window."),
        QStringLiteral("text"));
    parser.addPositionalArgument(
        QStringLiteral("NOTE..."), QStringLiteral("Texts to begin with, a note each."));
    if (!parser.parse(QApplication::arguments())) {
        parser.printErrorMessage();
        return 2;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.printHelpMessage();
        return 0;
    }

    MainWindow window;
    if (parser.isSet(QStringLiteral("title")))
        window.setWindowTitle(parser.getValue(QStringLiteral("title")));
    const QStringList texts = parser.positionalArguments();
    for (const QString& text : texts)
        window.addNote(text);
    window.show();
    return QApplication::exec();
}
