// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// What the user asked for on the command line.
struct CommandLine
{
    enum class Outcome { Run, Done, Bad };

    /// Parses the arguments of main(); help, version and errors are printed here. Needs no
    /// QApplication, so that they work without a display.
    Outcome parse(const QStringList& arguments);

    QString traceFile;
    QString snapshotFile;
    QStringList files;
};
