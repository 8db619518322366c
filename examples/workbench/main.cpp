// SPDX-License-Identifier: MIT
#include "appearance.h"
#include "command_line.h"
#include "event_mgr.h"
#include "main_window.h"
#include "trace_hub.h"
#include "translations.h"

#include <QApplication>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

// Lets Qt fall back to drawing off the screen where it would abort.
static void choosePlatform()
{
    if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb;offscreen");
    else if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "wayland;offscreen");
    else
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

// The window's picture, once everything that opening has set in motion has come to rest.
static void takeSnapshot(QWidget* window, const QString& file)
{
    QTimer::singleShot(200, window, [window, file] {
        const bool saved = window->grab().save(file, "PNG");
        if (!saved)
            std::fprintf(
                stderr, "zentu-workbench: cannot write the picture to %s\n", qUtf8Printable(file));
        QCoreApplication::exit(saved ? 0 : 1);
    });
}

int main(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    CommandLine commandLine;
    switch (commandLine.parse(arguments)) {
    case CommandLine::Outcome::Done:
        return 0;
    case CommandLine::Outcome::Bad:
        return 2;
    case CommandLine::Outcome::Run:
        break;
    }

    const bool platformIsChosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!platformIsChosen)
        choosePlatform();
    followScreenScale();
    // All that Qt is told is on our own command line, which has been parsed.
    int qtArgc = 1;
    QApplication application(qtArgc, argv);
    if (!platformIsChosen && QGuiApplication::platformName() == QLatin1String("offscreen")) {
        if (commandLine.snapshotFile.isEmpty()) {
            std::fputs(
                "zentu-workbench: there is no display; --snapshot works without one\n", stderr);
            return 1;
        }
        std::fputs("zentu-workbench: there is no display; drawing off the screen\n", stderr);
    }
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationName(QStringLiteral("Workbench"));
    QApplication::setApplicationVersion(QStringLiteral("1.0.0"));

    // The thread that asks for the bus first is the one that delivers.
    Zentu::EventManager::instance();
    TraceHub trace;
    if (!commandLine.traceFile.isEmpty())
        trace.writeTo(commandLine.traceFile);
    followAppearanceSetting();
    loadTranslations();

    MainWindow window;
    window.show();
    window.open(commandLine.files);
    if (!commandLine.snapshotFile.isEmpty())
        takeSnapshot(&window, commandLine.snapshotFile);
    return QApplication::exec();
}
