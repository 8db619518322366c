// SPDX-License-Identifier: MIT
#include <ZentuKit/ActionManager>
#include <ZentuKit/ObjectPool>

#include <QApplication>
#include <QMenu>

#include <cstdio>
#include <memory>

/// A service that one part publishes and another one looks for.
class Speller : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    bool knows(const QString& word) const { return word == QLatin1String("word"); }
};

// Knows neither who made the menu nor who made the service.
static void addModule()
{
    QMenu* const tools = Zentu::ActionManager::instance()->getMenu(QStringLiteral("menu.tools"));
    if (tools)
        tools->addAction(QStringLiteral("Check Spelling"));
    const QList<QObject*> published = Zentu::ObjectPool::instance()->allObjects();
    for (QObject* object : published) {
        if (auto* const speller = qobject_cast<Speller*>(object))
            std::printf("knows \"word\": %d\n", speller->knows(QStringLiteral("word")));
    }
}

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    auto tools = std::make_unique<QMenu>();
    Zentu::ActionManager::instance()->registerMenu(QStringLiteral("menu.tools"), tools.get());
    auto speller = std::make_unique<Speller>();
    Zentu::ObjectPool::instance()->addObject(speller.get());

    addModule();
    std::printf("in the menu: %s\n", qUtf8Printable(tools->actions().constFirst()->text()));

    // What is destroyed is forgotten.
    tools.reset();
    speller.reset();
    std::printf("menu: %d, objects: %d\n",
        Zentu::ActionManager::instance()->getMenu(QStringLiteral("menu.tools")) ? 1 : 0,
        static_cast<int>(Zentu::ObjectPool::instance()->allObjects().size()));
    return 0;
}

#include "registries.moc"
