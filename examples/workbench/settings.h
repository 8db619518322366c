// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QObject>
#include <QString>

/// The settings of the Workbench, kept by QSettings. Open documents follow changed().
class Settings : public QObject
{
    Q_OBJECT

public:
    enum class Appearance { System, Light, Dark };

    static Settings* instance();

    QFont editorFont() const;
    void setEditorFont(const QFont& font);
    Appearance appearance() const;
    void setAppearance(Appearance appearance);
    bool fitImages() const;
    void setFitImages(bool fit);
    bool smoothImages() const;
    void setSmoothImages(bool smooth);
    bool watchFiles() const;
    void setWatchFiles(bool watch);
    bool reloadUnmodified() const;
    void setReloadUnmodified(bool reload);

Q_SIGNALS:
    void changed();

private:
    void set(const QString& key, const QVariant& value);
};
