// SPDX-License-Identifier: MIT
#pragma once

#include "page.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPlainTextEdit;

namespace Zentu::Inspect {

/// Does what one would otherwise write a program for: posts an event, adds and removes a context,
/// triggers an action. Off until it is switched on, since the host cannot tell it from its own.
class TryPage : public PageWindow
{
    Q_OBJECT

public:
    explicit TryPage(Session& session);

    void refresh() override;

private:
    void post();
    void changeContext(void (*change)(Session&, const QString&), const QString& done);
    void trigger();
    void say(const QString& text);
    QWidget* makeContents();

    QCheckBox* m_isOn;
    QWidget* m_tools;
    QComboBox* m_type;
    QComboBox* m_mode;
    QPlainTextEdit* m_values;
    QComboBox* m_context;
    QComboBox* m_action;
    QLabel* m_answer;
};

} // namespace Zentu::Inspect
