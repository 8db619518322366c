// SPDX-License-Identifier: MIT
#include "record.h"

#include <QDateTime>

namespace Zentu::Inspect {

QByteArray Record::time() const
{
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(microseconds / 1000, Qt::UTC);
    return moment.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.")).toLatin1()
        + QByteArray::number(microseconds % 1000000).rightJustified(6, '0') + 'Z';
}

QByteArray Record::line() const
{
    return time() + ' ' + level + ' ' + QByteArray::number(thread) + ' ' + text;
}

} // namespace Zentu::Inspect
