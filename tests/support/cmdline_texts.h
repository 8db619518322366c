// SPDX-License-Identifier: MIT
#pragma once

#include "cmdline_model.h"

#include <QString>
#include <QStringList>

namespace Support {

// The texts of the model of command lines, and those of Qt.

inline CmdLineModel::Text text(const QString& string)
{
    return string.toStdU32String();
}

inline QString string(const CmdLineModel::Text& text)
{
    return QString::fromStdU32String(text);
}

inline std::vector<CmdLineModel::Text> texts(const QStringList& strings)
{
    std::vector<CmdLineModel::Text> result;
    for (const QString& each : strings)
        result.push_back(text(each));
    return result;
}

} // namespace Support
