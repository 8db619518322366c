// SPDX-License-Identifier: MIT
//
// Takes the pictures of the documentation: zentu-pictures FOLDER SUFFIX. The scale is Qt's
// QT_SCALE_FACTOR, the appearance the word "dark" in the suffix.

#include "appearance.h"
#include "file_guard.h"
#include "main_window.h"
#include "mdi_area.h"
#include "settings.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

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

// Each page of the dialog, which is modal: the work is done from inside its event loop.
void takePreferences(QWidget* window)
{
    QTimer::singleShot(RestMs, window, [] {
        auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        auto* tree = dialog->findChild<QTreeWidget*>();
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            QTreeWidgetItem* const group = tree->topLevelItem(i);
            for (int k = 0; k < group->childCount(); ++k) {
                tree->setCurrentItem(group->child(k));
                take(dialog,
                    QStringLiteral("preferences-%1").arg(group->child(k)->text(0).toLower()));
            }
        }
        dialog->reject();
    });
    pressKeys(window, "edit.preferences");
}

} // namespace

int main(int argc, char* argv[])
{
    followScreenScale();
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3)
        qFatal("usage: zentu-pictures FOLDER SUFFIX");
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationName(QStringLiteral("Workbench"));
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    QDir::setCurrent(arguments.at(1));
    s_suffix = arguments.at(2);
    Settings::instance()->setAppearance(s_suffix.contains(QLatin1String("dark"))
            ? Settings::Appearance::Dark
            : Settings::Appearance::Light);
    followAppearanceSetting();

    MainWindow window;
    window.resize(1000, 700);
    window.show();
    take(&window, QStringLiteral("empty"));

    const QString here = folder.path() + QLatin1Char('/');
    const QString notes = writeText(here + QStringLiteral("notes.txt"),
        "Shopping\n\n- bread\n- a dozen eggs\n- two lemons\n\n"
        "Saturday: call about the boat, and bring the map back.\n");
    const QString poem = writeText(here + QStringLiteral("autumn.txt"),
        "The morns are meeker than they were,\nThe nuts are getting brown;\n"
        "The berry's cheek is plumper,\nThe rose is out of town.\n\n"
        "The maple wears a gayer scarf,\nThe field a scarlet gown.\n"
        "Lest I should be old-fashioned,\nI'll put a trinket on.\n");
    const QString hills = drawHills(here + QStringLiteral("hills.png"));
    window.open({notes, hills, poem});
    take(&window, QStringLiteral("documents"));

    pressKeys(&window, "window.tile");
    take(&window, QStringLiteral("tiled"));
    auto* area = window.findChild<Zentu::MdiArea*>();
    area->setCurrentSubWindow(area->subWindows().at(1));
    area->subWindows().at(1)->showMaximized();
    take(&window, QStringLiteral("image"));

    // A change on disk meets one in the editor, and a file that is missing one that is sought.
    area->setCurrentSubWindow(area->subWindows().at(2));
    area->currentSubWindow()->findChild<QPlainTextEdit*>()->insertPlainText(
        QStringLiteral("Autumn\n\n"));
    writeText(poem, "The morns are meeker than they were.\n");
    window.open({here + QStringLiteral("missing.txt")});
    QTest::qWait(1000);
    take(&window, QStringLiteral("changed"));

    takePreferences(&window);
    return 0;
}
