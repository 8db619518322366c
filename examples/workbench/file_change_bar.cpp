// SPDX-License-Identifier: MIT
#include "file_change_bar.h"

#include "wrap_layout.h"

#include <QLabel>
#include <QPushButton>

FileChangeBar::FileChangeBar(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_reload(new QPushButton(tr("&Reload"), this))
    , m_difference(new QPushButton(tr("Show &Differences"), this))
{
    setObjectName(QStringLiteral("file_change_bar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::AlternateBase);
    m_text->setObjectName(QStringLiteral("file_change_text"));
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_reload->setObjectName(QStringLiteral("file_change_reload"));
    m_difference->setObjectName(QStringLiteral("file_change_difference"));
    auto* keep = new QPushButton(tr("&Keep Mine"), this);
    keep->setObjectName(QStringLiteral("file_change_keep"));

    auto* layout = new WrapLayout(this);
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    layout->addWidget(m_text);
    layout->addWidget(m_difference);
    layout->addWidget(keep);
    layout->addWidget(m_reload);

    connect(m_reload, &QPushButton::clicked, this, &FileChangeBar::reloadRequested);
    connect(keep, &QPushButton::clicked, this, &FileChangeBar::keepRequested);
    connect(m_difference, &QPushButton::clicked, this, &FileChangeBar::differenceRequested);
    hide();
}

void FileChangeBar::showChange(const QString& text, bool fileIsThere)
{
    m_text->setText(text);
    m_reload->setVisible(fileIsThere);
    m_difference->setVisible(fileIsThere);
    show();
}

void FileChangeBar::showDifference(const QString& text)
{
    showChange(text, true);
    m_difference->hide();
}
