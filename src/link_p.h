// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaMethod>
#include <QObject>

namespace Zentu {

/// A connection by signatures. They are looked up once for objects of exactly the two classes; in
/// any other they may name something that a derived class has declared anew.
template <typename Sender, typename Receiver>
class Link
{
public:
    /// The signatures as SIGNAL() and SLOT() make them; @p method may be a signal too.
    Link(const char* signal, const char* method)
        : m_signal(signal)
        , m_method(method)
        , m_senderMethod(find(Sender::staticMetaObject, signal))
        , m_receiverMethod(find(Receiver::staticMetaObject, method))
    {
    }

    void connect(const Sender* sender, const Receiver* receiver) const
    {
        if (areExact(sender, receiver))
            QObject::connect(sender, m_senderMethod, receiver, m_receiverMethod);
        else
            QObject::connect(sender, m_signal, receiver, m_method);
    }

    void disconnect(const Sender* sender, const Receiver* receiver) const
    {
        if (areExact(sender, receiver))
            QObject::disconnect(sender, m_senderMethod, receiver, m_receiverMethod);
        else
            QObject::disconnect(sender, m_signal, receiver, m_method);
    }

private:
    static QMetaMethod find(const QMetaObject& metaObject, const char* signature)
    {
        const bool isSignal = *signature == '0' + QSIGNAL_CODE;
        const char* const name = signature + 1;
        return metaObject.method(
            isSignal ? metaObject.indexOfSignal(name) : metaObject.indexOfSlot(name));
    }

    static bool areExact(const Sender* sender, const Receiver* receiver)
    {
        return sender && sender->metaObject() == &Sender::staticMetaObject
            && receiver->metaObject() == &Receiver::staticMetaObject;
    }

    const char* m_signal;
    const char* m_method;
    QMetaMethod m_senderMethod;
    QMetaMethod m_receiverMethod;
};

} // namespace Zentu
