// SPDX-License-Identifier: MIT
#include "empty_page.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

static constexpr int WidestLink = 420;

EmptyPage::EmptyPage(QWidget* parent)
    : QWidget(parent)
    , m_recent(new QWidget(this))
    , m_links(new QVBoxLayout(m_recent))
{
    setObjectName(QStringLiteral("empty_hint"));
    auto* hint = new QLabel(tr("No document is open.\n\nOpen files with Ctrl+O, begin one with "
                               "Ctrl+N, or drop them here."),
        this);
    hint->setObjectName(QStringLiteral("empty_text"));
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    m_links->setContentsMargins(0, 0, 0, 0);
    m_links->setSpacing(0);
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(hint);
    layout->addSpacing(12);
    layout->addWidget(m_recent, 0, Qt::AlignHCenter);
    layout->addStretch(1);
}

void EmptyPage::showRecentFiles(const QStringList& files)
{
    // The button that was clicked may be among them.
    const QList<QWidget*> old =
        m_recent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget* widget : old) {
        widget->hide();
        widget->deleteLater();
    }
    for (const QString& path : files)
        m_links->addWidget(createLink(path));
}

QWidget* EmptyPage::createLink(const QString& path)
{
    const QFileInfo info(path);
    QString folder = info.path();
    if (folder == QDir::homePath() || folder.startsWith(QDir::homePath() + QLatin1Char('/')))
        folder.replace(0, QDir::homePath().size(), QStringLiteral("~"));
    QString text =
        info.fileName() + QStringLiteral("  \u2013  ") + QDir::toNativeSeparators(folder);
    text = fontMetrics().elidedText(text, Qt::ElideMiddle, WidestLink);
    auto* const link =
        new QPushButton(text.replace(QLatin1Char('&'), QLatin1String("&&")), m_recent);
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    link->setToolTip(QDir::toNativeSeparators(path));
    connect(link, &QPushButton::clicked, this, [this, path] { Q_EMIT chosen(path); });
    return link;
}
