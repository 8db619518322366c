// SPDX-License-Identifier: MIT
//
// Takes the pictures of the documentation: zentu-pictures FOLDER SUFFIX HOME. The scale is Qt's
// QT_SCALE_FACTOR; "dark" and "rtl" in the suffix are the appearance and the direction. The files
// that are shown are written into HOME, so that their paths are those of a person.

#include "appearance.h"
#include "main_window.h"
#include "mdi_area.h"
#include "settings.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

namespace {

constexpr int RestMs = 300;

QString s_suffix;

void take(QWidget* widget, const QString& name)
{
    QTest::qWait(RestMs);
    const QString file = QStringLiteral("%1%2.png").arg(name, s_suffix);
    if (!widget->grab().save(file))
        qFatal("cannot write %s", qPrintable(file));
}

QString writeText(const QString& name, const QByteArray& text)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("cannot write %s", qPrintable(name));
    return name;
}

QString drawHills(const QString& name)
{
    QImage image(900, 560, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, image.height());
    sky.setColorAt(0, QColor(0x6f, 0xa8, 0xd8));
    sky.setColorAt(1, QColor(0xfd, 0xe8, 0xc8));
    painter.fillRect(image.rect(), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0xff, 0xd8, 0x70));
    painter.drawEllipse(QPoint(680, 150), 60, 60);
    const QColor greens[] = {
        QColor(0x8f, 0xb0, 0x8a), QColor(0x5f, 0x8f, 0x63), QColor(0x2f, 0x62, 0x45)};
    for (int i = 0; i < 3; ++i) {
        QPainterPath hill(QPointF(0, 560));
        hill.lineTo(0, 330 + 70 * i);
        hill.cubicTo(200 + 60 * i, 200 + 90 * i, 420 - 80 * i, 470 + 30 * i, 600, 330 + 60 * i);
        hill.cubicTo(720, 250 + 80 * i, 820, 300 + 60 * i, 900, 340 + 60 * i);
        hill.lineTo(900, 560);
        painter.setBrush(greens[i]);
        painter.drawPath(hill);
    }
    painter.end();
    if (!image.save(name))
        qFatal("cannot write %s", qPrintable(name));
    return name;
}

void pressKeys(QWidget* widget, const char* action)
{
    widget->window()->findChild<QAction*>(QLatin1String(action))->trigger();
}

// What a modal dialog shows: the work is done from inside its event loop.
void takeDialog(QWidget* window, const char* action, const std::function<void(QDialog*)>& work)
{
    QTimer::singleShot(RestMs, window, [work] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        work(dialog);
        dialog->reject();
    });
    pressKeys(window, action);
}

void takePreferences(QDialog* dialog)
{
    auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree"));
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* const group = tree->topLevelItem(i);
        for (int k = 0; k < group->childCount(); ++k) {
            tree->setCurrentItem(group->child(k));
            take(dialog, QStringLiteral("preferences-%1").arg(group->child(k)->text(0).toLower()));
        }
    }
    dialog->findChild<QLineEdit*>(QStringLiteral("preferences_filter"))
        ->setText(QStringLiteral("smooth"));
    take(dialog, QStringLiteral("preferences-filtered"));
}

/// The window and its documents, from state to state.
class Tour
{
public:
    explicit Tour(const QString& home)
        : m_home(home + QLatin1Char('/'))
        , m_notes(writeText(m_home + QStringLiteral("notes.txt"),
              "Shopping\n\n- bread\n- a dozen eggs\n- two lemons\n\n"
              "Saturday: call about the boat, and bring the map back.\n"))
        , m_poem(writeText(m_home + QStringLiteral("autumn.txt"),
              "The morns are meeker than they were,\nThe nuts are getting brown;\n"
              "The berry's cheek is plumper,\nThe rose is out of town.\n\n"
              "The maple wears a gayer scarf,\nThe field a scarlet gown.\n"
              "Lest I should be old-fashioned,\nI'll put a trinket on.\n"))
        , m_hills(drawHills(m_home + QStringLiteral("hills.png")))
    {
        m_window.resize(1000, 700);
        m_window.show();
        m_area = m_window.findChild<Zentu::MdiArea*>();
    }

    void takeAll()
    {
        take(&m_window, QStringLiteral("first"));
        m_window.open({m_notes, m_hills, m_poem});
        take(&m_window, QStringLiteral("documents"));
        takeFinding();
        takeLayouts();
        takeDialog(&m_window, "tools.find_action", [](QDialog* dialog) {
            dialog->findChild<QLineEdit*>()->setText(QStringLiteral("c"));
            take(dialog, QStringLiteral("find-action"));
        });
        takeDialog(&m_window, "edit.preferences", takePreferences);
        closeAll();
        take(&m_window, QStringLiteral("empty"));
        m_window.open({m_notes, m_hills, m_poem});
        takeChanged();
        takeMany();
    }

private:
    void takeFinding()
    {
        pressKeys(&m_window, "edit.find");
        auto* document = m_area->currentSubWindow();
        document->findChild<QLineEdit*>(QStringLiteral("find_text"))
            ->setText(QStringLiteral("the"));
        take(&m_window, QStringLiteral("find"));
        pressKeys(&m_window, "edit.replace");
        take(&m_window, QStringLiteral("replace"));
        pressKeys(&m_window, "window.tile");
        take(&m_window, QStringLiteral("replace-tiled"));
        document->findChild<QWidget*>(QStringLiteral("find_bar"))->hide();
    }

    void takeLayouts()
    {
        take(&m_window, QStringLiteral("tiled"));
        pressKeys(&m_window, "window.cascade");
        take(&m_window, QStringLiteral("cascade"));
        m_area->setCurrentSubWindow(m_area->subWindows().at(1));
        m_area->subWindows().at(1)->showMaximized();
        take(&m_window, QStringLiteral("image"));
    }

    // A change on disk meets one in the editor, and a file cannot be opened.
    void takeChanged()
    {
        m_area->setCurrentSubWindow(m_area->subWindows().at(2));
        m_area->currentSubWindow()->findChild<QPlainTextEdit*>()->insertPlainText(
            QStringLiteral("Autumn\n\n"));
        writeText(m_poem, "The morns are meeker than they were.\n");
        m_window.open({m_home + QStringLiteral("old/missing.txt")});
        QTest::qWait(1000);
        take(&m_window, QStringLiteral("changed"));
        pressKeys(&m_window, "window.tile");
        take(&m_window, QStringLiteral("changed-tiled"));
        m_area->currentSubWindow()->findChild<QPlainTextEdit*>()->document()->setModified(false);
    }

    void takeMany()
    {
        for (int i = 1; i <= 43; ++i)
            m_window.open({writeText(m_home + QStringLiteral("page %1.txt").arg(i), "A page.\n")});
        m_area->currentSubWindow()->showMaximized();
        take(&m_window, QStringLiteral("many"));
        auto* const menu = m_window.findChild<QMenu*>(QStringLiteral("menu.window"));
        menu->popup(m_window.mapToGlobal(QPoint(200, 25)));
        take(menu, QStringLiteral("many-menu"));
        menu->close();
    }

    void closeAll()
    {
        const QList<Zentu::IMdiSubWindow*> documents = m_area->subWindows();
        for (Zentu::IMdiSubWindow* document : documents)
            document->close();
    }

    QString m_home;
    QString m_notes;
    QString m_poem;
    QString m_hills;
    MainWindow m_window;
    Zentu::MdiArea* m_area;
};

} // namespace

int main(int argc, char* argv[])
{
    followScreenScale();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 4)
        qFatal("usage: zentu-pictures FOLDER SUFFIX HOME");
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationName(QStringLiteral("Workbench"));
    const QTemporaryDir settings;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QDir::setCurrent(arguments.at(1));
    s_suffix = arguments.at(2);
    qputenv("HOME", QFile::encodeName(arguments.at(3)));
    Settings::instance()->setAppearance(s_suffix.contains(QLatin1String("dark"))
            ? Settings::Appearance::Dark
            : Settings::Appearance::Light);
    if (s_suffix.contains(QLatin1String("rtl")))
        QApplication::setLayoutDirection(Qt::RightToLeft);
    followAppearanceSetting();
    Tour(arguments.at(3)).takeAll();
    return 0;
}
