#pragma once

#include <ZentuKit/IOptionPage>

class QSpinBox;

/// A page of the preferences: the size of the application's font.
class FontPage : public Zentu::IOptionPage
{
    Q_OBJECT

public:
    QStringList category() const override;
    QWidget* pageWidget() override;
    void initialize() override;
    void finalize() override;
    void apply() override;

private:
    QWidget* m_widget = nullptr;
    QSpinBox* m_size = nullptr;
};
