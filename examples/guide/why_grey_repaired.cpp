// SPDX-License-Identifier: MIT
#include <ZentuKit/ContextManager>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>
#include <ZentuKit/zentu_host.h>

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Zentu::followContexts(&application);
    Zentu::ProxyAction save;
    Zentu::ProxyActionManager::instance()->registerProxyAction(&save, QStringLiteral("file.save"));
    QAction saveText(QStringLiteral("Save the text"));
    save.addBackendAction(&saveText, QStringLiteral("text"));

    Zentu::ContextManager::instance()->addContext(QStringLiteral("text"));
    return save.isEnabled() ? 0 : 1;
}
