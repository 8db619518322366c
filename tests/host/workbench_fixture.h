// SPDX-License-Identifier: MIT
#pragma once

#include "events.h"
#include "ievent_handler.h"
#include "main_window.h"
#include "mdi_area.h"
#include "proxy_act.h"

#include <QDialogButtonBox>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QVariantMap>

#include <functional>
#include <memory>

/// Keeps the events that the bus delivers.
class Listener : public Zentu::IEventHandler
{
public:
    Listener();
    void handleEvent(Zentu::IEvent* event) override;

    QStringList types;
    QVariantMap last;
};

/// A window of the Workbench for every test, with settings and a folder of its own.
class WorkbenchFixture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

protected:
    static Zentu::ProxyAction* action(const QString& id);
    /// Does something to the next modal dialog.
    static void whenAsked(const std::function<void(QWidget* dialog)>& reaction);
    /// Presses a button of the next modal dialog.
    static void answer(QDialogButtonBox::StandardButton button);
    static void press(const QString& buttonName);

    void destroyWindow();
    QString path(const char* name) const;
    QString file(const char* name, const QByteArray& content) const;
    QString picture() const;
    static QByteArray content(const QString& path);
    static void replace(const QString& path, const QByteArray& content);

    template <typename T>
    T* current() const
    {
        return qobject_cast<T*>(m_window->findChild<Zentu::MdiArea*>()->currentSubWindow());
    }

    template <typename T>
    T* child(const char* name) const
    {
        return m_window->findChild<T*>(QString::fromLatin1(name));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<Listener> m_bus;
};
