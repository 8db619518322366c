// SPDX-License-Identifier: MIT
#include "events.h"

#include "event_mgr.h"

#include <QDir>
#include <QGuiApplication>
#include <QLocale>

namespace Events {

const QString DocumentOpened = QStringLiteral("document.opened");
const QString DocumentFailed = QStringLiteral("document.failed");
const QString DocumentClosed = QStringLiteral("document.closed");
const QString DocumentSaved = QStringLiteral("document.saved");
const QString DocumentChanged = QStringLiteral("document.changed");
const QString DocumentDeleted = QStringLiteral("document.deleted");

const QString Path = QStringLiteral("path");
const QString Kind = QStringLiteral("kind");
const QString Bytes = QStringLiteral("bytes");
const QString Message = QStringLiteral("message");

QStringList types()
{
    return {DocumentOpened, DocumentFailed, DocumentClosed, DocumentSaved, DocumentChanged,
        DocumentDeleted};
}

void post(const QString& type, const QVariantMap& values)
{
    auto* event = new Zentu::IEvent(type);
    event->data() = values;
    Zentu::EventManager::instance()->postEvent(event);
}

// A path or a number has its own direction; this mark keeps its first character with it.
static QString leftToRight(const QString& text)
{
    return QGuiApplication::isRightToLeft() ? QChar(0x200e) + text : text;
}

QString pathOf(const QVariantMap& values)
{
    return leftToRight(QDir::toNativeSeparators(values.value(Path).toString()));
}

QString sizeOf(const QVariantMap& values)
{
    return leftToRight(QLocale().formattedDataSize(values.value(Bytes).toLongLong()));
}

} // namespace Events
