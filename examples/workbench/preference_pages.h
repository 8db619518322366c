// SPDX-License-Identifier: MIT
#pragma once

#include "option_dlg.h"

#include <functional>
#include <memory>
#include <vector>

class QFormLayout;

/// A page of the preferences: a form that is filled when it is first looked at.
class PreferencePage : public Zentu::IOptionPage
{
    Q_OBJECT

public:
    explicit PreferencePage(const QStringList& category)
        : m_category(category)
    {
    }

    QStringList category() const override { return m_category; }
    QWidget* pageWidget() override { return m_widget; }
    void initialize() override;
    void finalize() override { }

    /// What stands on the page, in the order of its rows; known without loading it.
    virtual QStringList texts() const = 0;

protected:
    /// Adds the editors, showing the settings of the moment.
    virtual void fill(QFormLayout* form) = 0;

private:
    QStringList m_category;
    QWidget* m_widget = nullptr;
};

/// All pages, in the order of the dialog.
std::vector<std::unique_ptr<PreferencePage>> preferencePages();
