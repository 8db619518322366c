// SPDX-License-Identifier: MIT
//
// Has dying objects call back into the pool, and compares what comes of it with a model of its
// steps.

#include "object_pool.h"

#include "recorder.h"
#include "story.h"

#include <QCoreApplication>
#include <QPointer>

#include <thread>

using namespace Support;

namespace {

struct Library
{
    using Pool = Zentu::ObjectPool;

    static void deliverQueued(Pool* pool)
    {
        QCoreApplication::sendPostedEvents(pool, QEvent::MetaCall);
    }
    static void tellTo(Pool* /*pool*/, Story* /*story*/) { }
};

/// The same by its steps.
struct Model
{
    class Pool : public QObject
    {
    public:
        void addObject(QObject* object)
        {
            const QString text = about("add object:", printed(object));
            if (m_objects.contains(object)) {
                story->say(warning(text + QLatin1String("already exists")));
                return;
            }
            story->say(trace(text));
            m_objects.append(object);
            if (!object) {
                story->say(warning(QStringLiteral(
                    "QObject::connect: Cannot connect (nullptr)::destroyed(QObject*) to "
                    "Zentu::ObjectPool::onObjectDestroyed(QObject*)")));
                return;
            }
            connect(object, &QObject::destroyed, this, [this](QObject* dead) { forget(dead); });
        }

        void removeObject(QObject* object)
        {
            const QString text = about("remove object:", printed(object));
            if (!m_objects.contains(object)) {
                story->say(warning(text + QLatin1String("not found")));
                return;
            }
            story->say(trace(text));
            cut(object);
            m_objects.removeAll(object);
        }

        QList<QObject*> allObjects() const { return m_objects; }

        void clear()
        {
            story->say(trace(about("clear all objects", QString())));
            for (QObject* object : qAsConst(m_objects))
                cut(object);
            m_objects.clear();
        }

        Story* story = nullptr;
        bool isQueued = false;

    private:
        void forget(QObject* dead)
        {
            story->say(trace(about("object destoryed:",
                isQueued ? QLatin1String("QObject(") + printed(static_cast<const void*>(dead))
                        + QLatin1Char(')')
                         : printed(dead))));
            m_objects.removeAll(dead);
        }

        void cut(QObject* object)
        {
            if (object)
                disconnect(object, nullptr, this, nullptr);
            else
                story->say(
                    warning(QStringLiteral("QObject::disconnect: Unexpected nullptr parameter")));
        }

        QString about(const char* text, const QString& object) const
        {
            return QLatin1String("Zentu::ObjectPool(") + printed(static_cast<const void*>(this))
                + QLatin1String(") ") + QLatin1String(text) + QLatin1Char(' ')
                + (object.isEmpty() ? object : object + QLatin1Char(' '));
        }

        QList<QObject*> m_objects;
    };

    static void deliverQueued(Pool* pool)
    {
        pool->isQueued = true;
        QCoreApplication::sendPostedEvents(pool, QEvent::MetaCall);
        pool->isQueued = false;
    }
    static void tellTo(Pool* pool, Story* story) { pool->story = story; }
};

template <typename Kind>
class Tale : public Story
{
public:
    explicit Tale(quint32 seed)
        : Story(seed)
    {
        Kind::tellTo(&m_pool, this);
        call(&m_pool, QStringLiteral("pool"));
        call(nullptr, QStringLiteral("null"));
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    void create()
    {
        if (m_objects.size() == 8)
            return;
        auto* const object = new QObject;
        const QString name = QStringLiteral("object %1").arg(++m_ever);
        call(object, name);
        if (onceIn(2))
            object->setObjectName(name);
        m_objects.append(object);
        if (onceIn(2))
            listenTo(object);
    }

    // Before the pool or after it.
    void listenTo(QObject* object)
    {
        QObject::connect(object, &QObject::destroyed, object, [this, object] {
            if (m_isElsewhere)
                return;
            m_dying.append(object);
            calledBack(QStringLiteral("0x%1 dies").arg(quintptr(object), 0, 16));
            m_dying.removeLast();
        });
    }

    void deleteObject(QObject* object)
    {
        m_objects.removeOne(object);
        if (!onceIn(3)) {
            delete object;
            return;
        }
        m_isElsewhere = true;
        std::thread([=] { delete object; }).join();
        m_isElsewhere = false;
        // Until this the pool must not be asked to do anything with it.
        Kind::deliverQueued(&m_pool);
    }

    void step() override
    {
        QObject* const object = m_objects.isEmpty() || onceIn(20)
            ? nullptr
            : m_objects.at(below(static_cast<int>(m_objects.size())));
        const int what = below(12);
        switch (what) {
        case 0:
        case 1:
        case 2:
            create();
            break;
        case 3:
        case 4:
        case 5:
            m_pool.addObject(object);
            break;
        case 6:
            m_pool.removeObject(object);
            break;
        case 7:
            // One that is on its way out can still be taken out.
            if (!m_dying.isEmpty())
                m_pool.removeObject(m_dying.last());
            break;
        case 8:
            if (object)
                listenTo(object);
            break;
        case 9:
        case 10:
            if (object)
                deleteObject(object);
            break;
        default:
            if (onceIn(3))
                m_pool.clear();
            break;
        }
        sayWhatIsListed();
    }

    void sayWhatIsListed()
    {
        QStringList names;
        const QList<QObject*> objects = m_pool.allObjects();
        for (QObject* object : objects)
            names.append(QStringLiteral("0x%1").arg(quintptr(object), 0, 16));
        say(QLatin1String("listed: ") + names.join(QLatin1Char(' ')));
    }

    void end() override
    {
        while (!m_objects.isEmpty())
            deleteObject(m_objects.first());
        m_pool.clear();
    }

    Recorder m_recorder;
    typename Kind::Pool m_pool;
    QList<QObject*> m_objects;
    QList<QObject*> m_dying;
    int m_ever = 0;
    bool m_isElsewhere = false;
};

} // namespace

class ObjectPoolRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callbacksEqualTheModel_data() { addSeeds(20); }
    void callbacksEqualTheModel();
};

void ObjectPoolRandomTest::callbacksEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = Tale<Library>(seed).tell(400);
    QVERIFY(library.size() > 400);
    compareAccounts(library, Tale<Model>(seed).tell(400));
}

QTEST_GUILESS_MAIN(ObjectPoolRandomTest)
#include "tst_object_pool_random.moc"
