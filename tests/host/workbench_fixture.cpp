// SPDX-License-Identifier: MIT
#include "workbench_fixture.h"

#include "action_mgr.h"
#include "appearance.h"
#include "context_mgr.h"
#include "ievent.h"
#include "object_pool.h"

#include <QApplication>
#include <QFile>
#include <QPixmap>
#include <QPushButton>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

Listener::Listener()
{
    const QStringList all = Events::types();
    for (const QString& type : all)
        subscribe(type);
}

void Listener::handleEvent(Zentu::IEvent* event)
{
    types.append(event->type());
    last = event->data();
}

void WorkbenchFixture::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QApplication::setOrganizationName(QStringLiteral("ZentuKitTest"));
    QApplication::setApplicationName(QStringLiteral("Workbench"));
    followAppearanceSetting();
}

// Settings of its own for every test, also when two of these programs run at once.
void WorkbenchFixture::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    m_bus = std::make_unique<Listener>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void WorkbenchFixture::cleanup()
{
    m_bus.reset();
    destroyWindow();
}

// The registries do not know that their actions go with the window.
void WorkbenchFixture::destroyWindow()
{
    m_window.reset();
    delete Zentu::ProxyActionManager::instance();
    delete Zentu::ContextManager::instance();
    delete Zentu::ActionManager::instance();
    QVERIFY(Zentu::ObjectPool::instance()->allObjects().isEmpty());
}

Zentu::ProxyAction* WorkbenchFixture::action(const QString& id)
{
    return Zentu::ProxyActionManager::instance()->getProxyAction(id);
}

void WorkbenchFixture::whenAsked(const std::function<void(QWidget* dialog)>& reaction)
{
    auto* timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, qApp, [timer, reaction] {
        QWidget* const dialog = QApplication::activeModalWidget();
        if (!dialog || !dialog->isActiveWindow())
            return;
        // The timer may be deleted, with this function, by an event loop in the reaction.
        const std::function<void(QWidget*)> react = reaction;
        timer->stop();
        timer->deleteLater();
        react(dialog);
    });
    timer->start(10);
}

void WorkbenchFixture::answer(QDialogButtonBox::StandardButton button)
{
    whenAsked([button](QWidget* dialog) {
        dialog->findChild<QDialogButtonBox*>()->button(button)->click();
    });
}

void WorkbenchFixture::press(const QString& buttonName)
{
    whenAsked(
        [buttonName](QWidget* dialog) { dialog->findChild<QPushButton*>(buttonName)->click(); });
}

QString WorkbenchFixture::path(const char* name) const
{
    return m_folder->filePath(QString::fromUtf8(name));
}

QString WorkbenchFixture::file(const char* name, const QByteArray& content) const
{
    QFile file(path(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(content);
    return file.fileName();
}

QString WorkbenchFixture::picture() const
{
    QPixmap pixmap(400, 300);
    pixmap.fill(Qt::red);
    pixmap.save(path("picture.png"));
    return path("picture.png");
}

QByteArray WorkbenchFixture::content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

void WorkbenchFixture::replace(const QString& path, const QByteArray& content)
{
    QSaveFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.commit());
}
