// SPDX-License-Identifier: MIT
#include "main_window.h"

#include "zentu_host.h"

#include <QApplication>
#include <QScreen>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Rich Text"));
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationVersion(QStringLiteral(QT_VERSION_STR));

    Zentu::CmdLineParser parser;
    parser.setBrief(QApplication::applicationName());
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addVersionOption({QStringLiteral("-v"), QStringLiteral("--version")});
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The file to open."));
    Zentu::processCommandLine(parser);

    MainWindow window;
    const QRect available = window.screen()->availableGeometry();
    window.resize(available.width() / 2, available.height() * 2 / 3);
    window.move(available.center() - window.rect().center());
    if (!window.open(parser.positionalArguments().value(0)))
        window.openNew();
    window.show();
    return QApplication::exec();
}
