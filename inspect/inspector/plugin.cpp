// SPDX-License-Identifier: MIT
#include "inspector.h"

#include <QApplication>
#include <QGenericPlugin>
#include <QPointer>

#include <cstdio>

namespace Zentu::Inspect {

/// What Qt loads where QT_QPA_GENERIC_PLUGINS names "zentu".
class InspectorPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "plugin.json")

public:
    QObject* create(const QString& key, const QString& settings) override;
};

QObject* InspectorPlugin::create(const QString& key, const QString&)
{
    if (key.compare(QLatin1String("zentu"), Qt::CaseInsensitive) != 0)
        return nullptr;
    if (!qobject_cast<QApplication*>(QCoreApplication::instance())) {
        std::fputs("zentu-inspect: the program has no widgets, so there is no window\n", stderr);
        return nullptr;
    }
    return new Inspector;
}

} // namespace Zentu::Inspect

#include "plugin.moc"
