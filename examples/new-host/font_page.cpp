#include "font_page.h"

#include <QApplication>
#include <QFormLayout>
#include <QSpinBox>

QStringList FontPage::category() const
{
    return {tr("Appearance"), tr("Font")};
}

QWidget* FontPage::pageWidget()
{
    return m_widget;
}

// Only now, when the page is looked at for the first time. The dialog takes the widget.
void FontPage::initialize()
{
    m_widget = new QWidget;
    m_size = new QSpinBox;
    m_size->setRange(6, 72);
    m_size->setValue(QApplication::font().pointSize());
    auto* const form = new QFormLayout(m_widget);
    form->addRow(tr("&Size:"), m_size);
}

void FontPage::finalize() { }

void FontPage::apply()
{
    QFont font = QApplication::font();
    font.setPointSize(m_size->value());
    QApplication::setFont(font);
}
