// SPDX-License-Identifier: MIT
#include "notes.h"

#include "ievent.h"
#include "ievent_handler.h"
#include "stack.h"

#include <QAction>
#include <QCoreApplication>
#include <QThread>

namespace Zentu::Inspect {

template <typename T>
static T* at(Address address)
{
    return reinterpret_cast<T*>(address);
}

/// A class and the name of the object, where it has one.
static QByteArray described(const QObject* object)
{
    QByteArray text = object->metaObject()->className();
    if (!object->objectName().isEmpty())
        text += " \"" + object->objectName().toUtf8() + '"';
    return text;
}

static QByteArray noteOfHandler(const IEventHandler* handler)
{
    QByteArray text = QByteArray::fromStdString(Stack::className(typeid(*handler)));
    const auto* const object = dynamic_cast<const QObject*>(handler);
    if (object && object->thread() == QThread::currentThread() && !object->objectName().isEmpty())
        text += " \"" + object->objectName().toUtf8() + '"';
    return "handler: " + text;
}

// Objects are not looked at: whoever posts them may do so from any thread.
static QByteArray valueText(const QVariant& value)
{
    if (value.canConvert<QObject*>())
        return value.typeName();
    if (value.canConvert<QStringList>() && value.toStringList().size() > 1)
        return value.toStringList().join(QLatin1String(", ")).toUtf8();
    const QString text = value.toString();
    return text.isEmpty() && value.isValid() && !value.canConvert<QString>() ? value.typeName()
                                                                             : text.toUtf8();
}

static void takeValues(const IEvent* event, Record& record)
{
    const QVariantMap& values = event->data();
    for (auto it = values.begin(); it != values.end(); ++it)
        record.notes.append("value: " + it.key().toUtf8() + " = " + valueText(it.value()));
}

const QObject* ownerOf(const QAction& action)
{
    const QObject* owner = action.parent();
    while (owner && owner->parent() && owner->objectName().isEmpty()
        && owner->metaObject() == &QObject::staticMetaObject)
        owner = owner->parent();
    return owner;
}

static QByteArray noteOfBackend(const QAction* action)
{
    QByteArray text = action->isEnabled() ? "backend: enabled" : "backend: disabled";
    if (const QObject* const owner = ownerOf(*action))
        text += ", of " + described(owner);
    return text;
}

/// Whether the object behind an address can be watched from here on.
static void keep(Address address, Record& record)
{
    if (address != 0)
        record.objects.emplace_back(address, at<QObject>(address));
}

static bool isInWindowsThread()
{
    return qApp && qApp->thread() == QThread::currentThread();
}

static bool namesLivingObject(Text text)
{
    switch (text) {
    case Text::AddBackend:
    case Text::ActiveBackend:
    case Text::RegisterProxy:
    case Text::RegisterMenu:
    case Text::RegisterMenubar:
    case Text::RegisterToolbar:
    case Text::AddView:
    case Text::CurrentWindow:
    case Text::InitializePage:
    case Text::AddObject:
        return true;
    default:
        return false;
    }
}

void takeNotes(const Line& line, Record& record)
{
    // A line of somebody else's may look like one of ours, and name what does not exist.
    if (line.reading != Reading::Understood || !line.isOwnSpeaker)
        return;
    const bool isSecond = line.info->items.size() > 1 && line.info->items[1] == 'o';
    const Address named = line.items[isSecond ? 1 : 0].address;
    switch (line.info->id) {
    case Text::Subscribe:
        record.notes.append(noteOfHandler(at<IEventHandler>(named)));
        break;
    case Text::Post:
        if (named != 0)
            takeValues(at<IEvent>(named), record);
        break;
    case Text::AddBackend:
    case Text::ActiveBackend:
        if (named != 0)
            record.notes.append(noteOfBackend(at<QAction>(named)));
        break;
    default:
        break;
    }
    if (!isInWindowsThread())
        return;
    if (line.info->id != Text::Destroying)
        keep(line.speaker.address, record);
    if (namesLivingObject(line.info->id))
        keep(named, record);
}

bool isCalledByHost(const Line& line)
{
    if (line.reading != Reading::Understood)
        return false;
    switch (line.info->id) {
    case Text::SetContexts:
    case Text::UpdateProxies:
    case Text::ObjectDestroyed:
    case Text::BackendDestroyed:
        return false;
    default:
        return true;
    }
}

} // namespace Zentu::Inspect
