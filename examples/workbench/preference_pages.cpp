// SPDX-License-Identifier: MIT
#include "preference_pages.h"

#include "settings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QSpinBox>

void PreferencePage::initialize()
{
    m_widget = new QWidget;
    auto* form = new QFormLayout(m_widget);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    fill(form);
}

namespace {

Settings* settings()
{
    return Settings::instance();
}

QCheckBox* addCheckBox(QFormLayout* form, const QString& text, bool checked, const char* name)
{
    auto* box = new QCheckBox(text);
    box->setChecked(checked);
    box->setObjectName(QLatin1String(name));
    form->addRow(box);
    return box;
}

/// The font of text documents.
class FontPage : public PreferencePage
{
public:
    FontPage()
        : PreferencePage({tr("Editor"), tr("Font")})
    {
    }

    QStringList texts() const override { return {tr("&Family:"), tr("&Size:")}; }

    void apply() override
    {
        QFont font = m_family->currentFont();
        font.setPointSize(m_size->value());
        settings()->setEditorFont(font);
    }

protected:
    void fill(QFormLayout* form) override
    {
        const QFont font = settings()->editorFont();
        m_family = new QFontComboBox;
        m_family->setObjectName(QStringLiteral("font_family"));
        m_family->setCurrentFont(font);
        m_size = new QSpinBox;
        m_size->setObjectName(QStringLiteral("font_size"));
        m_size->setRange(5, 72);
        m_size->setSuffix(tr(" pt"));
        m_size->setValue(font.pointSize());
        form->addRow(texts().at(0), m_family);
        form->addRow(texts().at(1), m_size);
    }

private:
    QFontComboBox* m_family = nullptr;
    QSpinBox* m_size = nullptr;
};

/// The colours of the whole window.
class ColorsPage : public PreferencePage
{
public:
    ColorsPage()
        : PreferencePage({tr("Editor"), tr("Colors")})
    {
    }

    QStringList texts() const override
    {
        return {tr("&Appearance:"), tr("Like the desktop"), tr("Light"), tr("Dark")};
    }

    void apply() override
    {
        settings()->setAppearance(static_cast<Settings::Appearance>(m_appearance->currentIndex()));
    }

protected:
    void fill(QFormLayout* form) override
    {
        m_appearance = new QComboBox;
        m_appearance->setObjectName(QStringLiteral("appearance"));
        m_appearance->addItems(texts().mid(1));
        m_appearance->setCurrentIndex(static_cast<int>(settings()->appearance()));
        form->addRow(texts().at(0), m_appearance);
    }

private:
    QComboBox* m_appearance = nullptr;
};

/// How pictures are shown.
class ScalingPage : public PreferencePage
{
public:
    ScalingPage()
        : PreferencePage({tr("Images"), tr("Scaling")})
    {
    }

    QStringList texts() const override
    {
        return {tr("&Fit large pictures into the window"), tr("&Smooth pictures that are scaled")};
    }

    void apply() override
    {
        settings()->setFitImages(m_fit->isChecked());
        settings()->setSmoothImages(m_smooth->isChecked());
    }

protected:
    void fill(QFormLayout* form) override
    {
        m_fit = addCheckBox(form, texts().at(0), settings()->fitImages(), "fit_images");
        m_smooth = addCheckBox(form, texts().at(1), settings()->smoothImages(), "smooth_images");
    }

private:
    QCheckBox* m_fit = nullptr;
    QCheckBox* m_smooth = nullptr;
};

/// What happens when an open file changes.
class WatchingPage : public PreferencePage
{
public:
    WatchingPage()
        : PreferencePage({tr("Files"), tr("Watching")})
    {
    }

    QStringList texts() const override
    {
        return {tr("&Notice when open files change on disk"),
            tr("&Reload texts that have no changes of their own")};
    }

    void apply() override
    {
        settings()->setWatchFiles(m_watch->isChecked());
        settings()->setReloadUnmodified(m_reload->isChecked());
    }

protected:
    void fill(QFormLayout* form) override
    {
        m_watch = addCheckBox(form, texts().at(0), settings()->watchFiles(), "watch_files");
        m_reload =
            addCheckBox(form, texts().at(1), settings()->reloadUnmodified(), "reload_unmodified");
    }

private:
    QCheckBox* m_watch = nullptr;
    QCheckBox* m_reload = nullptr;
};

} // namespace

std::vector<std::unique_ptr<PreferencePage>> preferencePages()
{
    std::vector<std::unique_ptr<PreferencePage>> pages;
    pages.push_back(std::make_unique<FontPage>());
    pages.push_back(std::make_unique<ColorsPage>());
    pages.push_back(std::make_unique<ScalingPage>());
    pages.push_back(std::make_unique<WatchingPage>());
    return pages;
}
