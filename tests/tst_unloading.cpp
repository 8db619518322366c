// SPDX-License-Identifier: MIT
#include <QObject>
#include <QTest>

#include <dlfcn.h>
#include <sys/mman.h>

#include <memory>

namespace {

/// The plug-in, by which alone the library comes and goes.
class Guest
{
public:
    Guest()
        : m_handle(dlopen(GUEST, RTLD_NOW | RTLD_LOCAL))
    {
        if (!m_handle)
            qWarning("%s", dlerror());
    }
    ~Guest()
    {
        if (m_handle)
            dlclose(m_handle);
    }
    Q_DISABLE_COPY(Guest)

    template <typename... Arguments>
    int call(const char* name, Arguments... arguments) const
    {
        void* const function = m_handle ? dlsym(m_handle, name) : nullptr;
        return function ? reinterpret_cast<int (*)(Arguments...)>(function)(arguments...) : -1;
    }

    /// Where its code lies, and that of the library.
    void* address() const { return dlsym(m_handle, "useBus"); }
    void* libraryAddress() const { return dlsym(m_handle, "_ZN5Zentu12EventManager8instanceEv"); }

private:
    void* m_handle;
};

/// A page where nothing can be loaded again, so that what was there before comes to lie elsewhere.
class Blocked
{
public:
    explicit Blocked(void* address)
        : m_page(reinterpret_cast<void*>(quintptr(address) / Size * Size))
    {
    }
    ~Blocked()
    {
        if (m_isTaken)
            munmap(m_page, Size);
    }
    Q_DISABLE_COPY(Blocked)

    /// Does nothing if something is there.
    void take()
    {
        m_isTaken =
            mmap(m_page, Size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED_NOREPLACE, -1, 0)
            == m_page;
    }

private:
    static constexpr std::size_t Size = 4096;
    void* m_page;
    bool m_isTaken = false;
};

/// Whether code or data lies there.
bool isMapped(void* address)
{
    Dl_info info;
    return dladdr(address, &info) != 0;
}

} // namespace

class UnloadingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pluginGoes();
    void busServesTheNextPlugin();
    void objectOfTheHostMayStayInThePool();
    void watcherOfTheHostMayStay();
};

// Otherwise the tests below would tell nothing.
void UnloadingTest::pluginGoes()
{
    void* address = nullptr;
    {
        const Guest guest;
        address = guest.address();
        QVERIFY(address);
        QVERIFY(isMapped(address));
    }
    QVERIFY(!isMapped(address));
}

void UnloadingTest::busServesTheNextPlugin()
{
    std::unique_ptr<Blocked> blocked;
    {
        const Guest guest;
        QCOMPARE(guest.call("useBus"), 1);
        blocked = std::make_unique<Blocked>(guest.libraryAddress());
    }
    blocked->take();
    const Guest guest;
    QCOMPARE(guest.call("useBus"), 1);
}

void UnloadingTest::objectOfTheHostMayStayInThePool()
{
    auto object = std::make_unique<QObject>();
    {
        const Guest guest;
        QCOMPARE(guest.call("publish", object.get()), 1);
    }
    object.reset();
}

void UnloadingTest::watcherOfTheHostMayStay()
{
    auto parent = std::make_unique<QObject>();
    {
        const Guest guest;
        QCOMPARE(guest.call("watch", parent.get()), 1);
    }
    parent.reset();
}

QTEST_GUILESS_MAIN(UnloadingTest)
#include "tst_unloading.moc"
