// SPDX-License-Identifier: MIT
#include "translations.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

void loadTranslations()
{
    auto* translator = new QTranslator(qApp);
    const QString folder =
        QApplication::applicationDirPath() + QStringLiteral("/../share/ZentuKit/translations");
    if (translator->load(QLocale(), QStringLiteral("zentukit"), QStringLiteral("_"), folder))
        QApplication::installTranslator(translator);
}
