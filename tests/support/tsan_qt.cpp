// SPDX-License-Identifier: MIT
//
// Qt's libraries are not instrumented, so the thread sanitizer does not see what their locks and
// their event queue put in order. These stand in front of the functions of Qt that our code calls,
// do the same by calling them, and tell the sanitizer about the order. They tell more than there is
// in two places: every post comes before every later delivery, and who only read under a lock comes
// before who takes it next. A race that needs either to be seen is not reported.

#include <QMetaMethod>
#include <QObject>

#include <dlfcn.h>

extern "C" {
void __tsan_acquire(void* address);
void __tsan_release(void* address);
}

namespace {

template <typename Function>
Function* next(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

// Any event that is posted happens before any that is delivered later.
char s_queue;

bool onEventDelivered(void** /*event*/)
{
    __tsan_acquire(&s_queue);
    return false;
}

const bool s_registered =
    QInternal::registerCallback(QInternal::EventNotifyCallback, onEventDelivered);

} // namespace

extern "C" {

void _ZN14QReadWriteLock11lockForReadEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock11lockForReadEv");
    real(lock);
    __tsan_acquire(lock);
}

void _ZN14QReadWriteLock12lockForWriteEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock12lockForWriteEv");
    real(lock);
    __tsan_acquire(lock);
}

void _ZN14QReadWriteLock6unlockEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock6unlockEv");
    __tsan_release(lock);
    real(lock);
}

void _ZN11QBasicMutex12lockInternalEv(void* mutex)
{
    static const auto real = next<void(void*)>("_ZN11QBasicMutex12lockInternalEv");
    real(mutex);
    __tsan_acquire(mutex);
}

void _ZN11QBasicMutex14unlockInternalEv(void* mutex)
{
    static const auto real = next<void(void*)>("_ZN11QBasicMutex14unlockInternalEv");
    __tsan_release(mutex);
    real(mutex);
}

} // extern "C"

bool QMetaMethod::invoke(QObject* object, Qt::ConnectionType connectionType,
    QGenericReturnArgument returnValue, QGenericArgument val0, QGenericArgument val1,
    QGenericArgument val2, QGenericArgument val3, QGenericArgument val4, QGenericArgument val5,
    QGenericArgument val6, QGenericArgument val7, QGenericArgument val8,
    QGenericArgument val9) const
{
    using Invoke = bool(const QMetaMethod*, QObject*, Qt::ConnectionType, QGenericReturnArgument,
        QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument,
        QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument, QGenericArgument);
    static const auto real =
        next<Invoke>("_ZNK11QMetaMethod6invokeEP7QObjectN2Qt14ConnectionTypeE"
                     "22QGenericReturnArgument16QGenericArgumentS5_S5_S5_S5_S5_S5_S5_S5_S5_");
    __tsan_release(&s_queue);
    return real(this, object, connectionType, returnValue, val0, val1, val2, val3, val4, val5, val6,
        val7, val8, val9);
}

bool QMetaObject::invokeMethodImpl(
    QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type, void* result)
{
    using Invoke = bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    static const auto real = next<Invoke>("_ZN11QMetaObject16invokeMethodImplEP7QObject"
                                          "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&s_queue);
    return real(object, slot, type, result);
}
