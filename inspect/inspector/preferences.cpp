// SPDX-License-Identifier: MIT
#include "preferences.h"

#include "listener.h"

#include <QFormLayout>
#include <QSpinBox>

namespace Zentu::Inspect {

RecordingPage::RecordingPage(Listener& listener)
    : m_listener(listener)
{
}

RecordingPage::~RecordingPage()
{
    delete m_widget;
}

QStringList RecordingPage::category() const
{
    return {tr("Lines"), tr("Callers")};
}

QWidget* RecordingPage::pageWidget()
{
    return m_widget;
}

void RecordingPage::initialize()
{
    m_widget = new QWidget;
    auto* const layout = new QFormLayout(m_widget);
    m_depth = new QSpinBox;
    m_depth->setRange(0, 50);
    m_depth->setSpecialValueText(tr("none"));
    m_depth->setValue(m_listener.stackDepth());
    layout->addRow(tr("&Callers kept with a line:"), m_depth);
}

void RecordingPage::finalize() { }

void RecordingPage::apply()
{
    m_listener.setStackDepth(m_depth->value());
}

} // namespace Zentu::Inspect
