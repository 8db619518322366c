// SPDX-License-Identifier: MIT
#include "main_window.h"

#include "zentu_host.h"

#include <QApplication>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("MDI Example"));
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationVersion(QStringLiteral(QT_VERSION_STR));

    Zentu::CmdLineParser parser;
    parser.setBrief(QStringLiteral("Edits several plain texts."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addVersionOption({QStringLiteral("-v"), QStringLiteral("--version")});
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The files to open."));
    Zentu::processCommandLine(parser);

    MainWindow window;
    const QStringList files = parser.positionalArguments();
    for (const QString& file : files)
        window.open(file);
    window.show();
    return QApplication::exec();
}
