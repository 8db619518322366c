// SPDX-License-Identifier: MIT
#include <ZentuKit/ContextManager>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    auto* const contexts = Zentu::ContextManager::instance();
    auto* const actions = Zentu::ProxyActionManager::instance();
    // The one connection that a host makes.
    QObject::connect(contexts, &Zentu::ContextManager::contextChanged,
        [=] { actions->setCurrentContext(contexts->currentContexts()); });

    // What stands in the menu, and how it looks where a backend says nothing.
    Zentu::ProxyAction copy;
    copy.defaultProp()->setText(QStringLiteral("Copy"));
    actions->registerProxyAction(&copy, QStringLiteral("edit.copy"));

    QAction copyText(nullptr);
    QObject::connect(&copyText, &QAction::triggered, [] { std::puts("text is copied"); });
    copy.addBackendAction(&copyText, QStringLiteral("text"));
    QAction copyPicture(QStringLiteral("Copy Picture"), nullptr);
    QObject::connect(&copyPicture, &QAction::triggered, [] { std::puts("picture is copied"); });
    copy.addBackendAction(&copyPicture, QStringLiteral("image"));

    const auto show = [&] {
        std::printf("%s, %s\n", qUtf8Printable(copy.text()), copy.isEnabled() ? "on" : "off");
    };
    show();
    contexts->addContext(QStringLiteral("text"));
    show();
    copy.trigger();
    contexts->addContext(QStringLiteral("image"));
    show();
    copy.trigger();
    contexts->removeContext(QStringLiteral("image"));
    show();
    return 0;
}
