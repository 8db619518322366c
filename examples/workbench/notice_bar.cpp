// SPDX-License-Identifier: MIT
#include "notice_bar.h"

#include "events.h"
#include "ievent.h"
#include "lambda_slot.h"

#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

static constexpr int MostMessages = 4;

NoticeBar::NoticeBar(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("notice_bar"));
    setFrameShape(QFrame::StyledPanel);
    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(16));
    m_text->setObjectName(QStringLiteral("notice_text"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* closer = new QToolButton(this);
    closer->setText(QStringLiteral("\u00d7"));
    closer->setAutoRaise(true);
    closer->setToolTip(tr("Dismiss"));
    closer->setAccessibleName(closer->toolTip());

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    layout->addWidget(closer, 0, Qt::AlignTop);
    Zentu::LambdaSlotWrapper::connect(closer, SIGNAL(clicked()), [this] {
        m_messages.clear();
        hide();
    });
    hide();
    subscribe(Events::DocumentFailed);
}

void NoticeBar::handleEvent(Zentu::IEvent* event)
{
    const QString message = event->data().value(Events::Message).toString();
    qWarning().noquote() << message;
    m_messages.append(message);
    QStringList shown = m_messages.mid(0, MostMessages);
    if (m_messages.size() > MostMessages)
        shown.append(
            tr("and %n more", nullptr, static_cast<int>(m_messages.size()) - MostMessages));
    m_text->setText(shown.join(QLatin1Char('\n')));
    show();
}
