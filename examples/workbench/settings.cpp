// SPDX-License-Identifier: MIT
#include "settings.h"

#include <QFontDatabase>
#include <QSettings>

static const QString FontKey = QStringLiteral("editor/font");
static const QString AppearanceKey = QStringLiteral("editor/appearance");
static const QString FitKey = QStringLiteral("images/fit");
static const QString SmoothKey = QStringLiteral("images/smooth");
static const QString WatchKey = QStringLiteral("files/watch");
static const QString ReloadKey = QStringLiteral("files/reloadUnmodified");

Settings* Settings::instance()
{
    static Settings settings;
    return &settings;
}

void Settings::set(const QString& key, const QVariant& value)
{
    QSettings store;
    if (store.value(key) == value)
        return;
    store.setValue(key, value);
    Q_EMIT changed();
}

QFont Settings::editorFont() const
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QString stored = QSettings().value(FontKey).toString();
    if (!stored.isEmpty())
        font.fromString(stored);
    return font;
}

void Settings::setEditorFont(const QFont& font)
{
    set(FontKey, font.toString());
}

Settings::Appearance Settings::appearance() const
{
    return static_cast<Appearance>(qBound(0, QSettings().value(AppearanceKey).toInt(), 2));
}

void Settings::setAppearance(Appearance appearance)
{
    set(AppearanceKey, static_cast<int>(appearance));
}

bool Settings::fitImages() const
{
    return QSettings().value(FitKey, true).toBool();
}

void Settings::setFitImages(bool fit)
{
    set(FitKey, fit);
}

bool Settings::smoothImages() const
{
    return QSettings().value(SmoothKey, true).toBool();
}

void Settings::setSmoothImages(bool smooth)
{
    set(SmoothKey, smooth);
}

bool Settings::watchFiles() const
{
    return QSettings().value(WatchKey, true).toBool();
}

void Settings::setWatchFiles(bool watch)
{
    set(WatchKey, watch);
}

bool Settings::reloadUnmodified() const
{
    return QSettings().value(ReloadKey, false).toBool();
}

void Settings::setReloadUnmodified(bool reload)
{
    set(ReloadKey, reload);
}
