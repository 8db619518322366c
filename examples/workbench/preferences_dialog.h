// SPDX-License-Identifier: MIT
#pragma once

#include "option_dlg.h"
#include "preference_pages.h"
#include "shortcuts_page.h"

#include <memory>
#include <vector>

/// The preferences: all pages, with a filter, in reach of the keyboard.
class PreferencesDialog : public Zentu::OptionDialog
{
    Q_OBJECT

public:
    explicit PreferencesDialog(QWidget* window);

private:
    struct Pages
    {
        explicit Pages(const QWidget* window);
        QList<Zentu::IOptionPage*> list();
        QStringList textsOf(const QStringList& category) const;

        std::vector<std::unique_ptr<PreferencePage>> forms;
        ShortcutsPage shortcuts;
    };

    PreferencesDialog(std::unique_ptr<Pages> pages, QWidget* window);

    void orderTabs();

    std::unique_ptr<Pages> m_pages;
};
