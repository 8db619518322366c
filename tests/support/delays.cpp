// SPDX-License-Identifier: MIT
//
// With ZENTU_DELAYS in the environment, threads give way now and then between the steps of the
// library: at its locks, its lines, its connections, and where an object is taken apart. So they
// meet in orders that they hardly ever come to by themselves; the number is the seed.
//
// These stand in front of the functions that the library calls there, and call them.

#include <QObject>

#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

template <typename Function>
Function* next(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

unsigned seedOfThisThread(unsigned seed)
{
    static std::atomic<unsigned> threads{0};
    return seed * 1000 + threads++;
}

// One in so many times. By sleeping: who yields waits for all others of a busy machine.
void giveWay(unsigned rarity)
{
    static const char* const seed = std::getenv("ZENTU_DELAYS");
    if (!seed)
        return;
    thread_local std::minstd_rand random(
        seedOfThisThread(static_cast<unsigned>(std::strtoul(seed, nullptr, 10))));
    const auto number = random();
    if (number % rarity == 0)
        std::this_thread::sleep_for(std::chrono::microseconds(number / rarity % 200));
}

/// Gives way before a step and after it.
struct Step
{
    Step() { giveWay(50); }
    ~Step() { giveWay(50); }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
};

} // namespace

extern "C" {

void _ZN4wisp6logger3logEiPKc(void* logger, int level, const char* text)
{
    static const auto real = next<void(void*, int, const char*)>("_ZN4wisp6logger3logEiPKc");
    const Step step;
    real(logger, level, text);
}

// Those of the sanitizer's build stand in front already.
#ifndef __SANITIZE_THREAD__
void _ZN14QReadWriteLock11lockForReadEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock11lockForReadEv");
    const Step step;
    real(lock);
}

void _ZN14QReadWriteLock12lockForWriteEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock12lockForWriteEv");
    const Step step;
    real(lock);
}

void _ZN14QReadWriteLock6unlockEv(void* lock)
{
    static const auto real = next<void(void*)>("_ZN14QReadWriteLock6unlockEv");
    const Step step;
    real(lock);
}
#endif

void _ZN7QObjectD2Ev(void* object)
{
    static const auto real = next<void(void*)>("_ZN7QObjectD2Ev");
    const Step step;
    real(object);
}

} // extern "C"

QMetaObject::Connection QObject::connect(const QObject* sender, const char* signal,
    const QObject* receiver, const char* method, Qt::ConnectionType type)
{
    using Connect = QMetaObject::Connection(
        const QObject*, const char*, const QObject*, const char*, Qt::ConnectionType);
    static const auto real =
        next<Connect>("_ZN7QObject7connectEPKS_PKcS1_S3_N2Qt14ConnectionTypeE");
    const Step step;
    return real(sender, signal, receiver, method, type);
}

bool QObject::disconnect(
    const QObject* sender, const char* signal, const QObject* receiver, const char* method)
{
    using Disconnect = bool(const QObject*, const char*, const QObject*, const char*);
    static const auto real = next<Disconnect>("_ZN7QObject10disconnectEPKS_PKcS1_S3_");
    const Step step;
    return real(sender, signal, receiver, method);
}

// Qt takes a dying object apart with this, after it has told who listens.
void operator delete(void* memory) noexcept
{
    static const auto real = next<void(void*)>("_ZdlPv");
    giveWay(1000);
    real(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    operator delete(memory);
}
