// SPDX-License-Identifier: MIT
#include "html.h"

#include <QCoreApplication>
#include <QUrl>

namespace Zentu::Inspect::Html {

QString heading(const QString& text)
{
    return QStringLiteral("<h3>%1</h3>").arg(text.toHtmlEscaped());
}

QString paragraph(const QString& html)
{
    return QStringLiteral("<p>%1</p>").arg(html);
}

QString table(const QList<QStringList>& rows)
{
    QString html = QStringLiteral("<table cellspacing='0' cellpadding='2'>");
    for (const QStringList& cells : rows) {
        html += QLatin1String("<tr>");
        for (const QString& cell : cells)
            html += QStringLiteral("<td>%1&nbsp;&nbsp;</td>").arg(cell);
        html += QLatin1String("</tr>");
    }
    return html + QLatin1String("</table>");
}

QString list(const QStringList& items)
{
    return QLatin1String("<ul><li>") + items.join(QLatin1String("</li><li>"))
        + QLatin1String("</li></ul>");
}

QString link(const QString& page, const QString& id, const QString& text)
{
    return QStringLiteral("<a href='%1:%2'>%3</a>")
        .arg(page, QString::fromLatin1(QUrl::toPercentEncoding(id)), text.toHtmlEscaped());
}

QString linkToLine(qint64 line)
{
    return link(QStringLiteral("line"), QString::number(line),
        QCoreApplication::translate("Zentu::Inspect::Html", "line %1").arg(line));
}

QString strong(const QString& text)
{
    return QStringLiteral("<b>%1</b>").arg(text.toHtmlEscaped());
}

} // namespace Zentu::Inspect::Html
