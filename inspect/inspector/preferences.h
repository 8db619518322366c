// SPDX-License-Identifier: MIT
#pragma once

#include "option_dlg.h"

#include <QPointer>

class QSpinBox;

namespace Zentu::Inspect {

class Listener;

/// How much is kept with each line.
class RecordingPage : public Zentu::IOptionPage
{
    Q_OBJECT

public:
    explicit RecordingPage(Listener& listener);
    ~RecordingPage() override;

    QStringList category() const override;
    QWidget* pageWidget() override;
    void initialize() override;
    void finalize() override;
    void apply() override;

private:
    Listener& m_listener;
    QPointer<QWidget> m_widget;
    QSpinBox* m_depth = nullptr;
};

} // namespace Zentu::Inspect
