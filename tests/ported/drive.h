// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include <functional>

/// How a user drives a window: by its menus, its keys and the dialogs that come.
namespace Drive {

/// The action whose text, without its mnemonic, is @p text; also in the menus of menus.
inline QAction* action(const QMainWindow& window, const QString& text)
{
    const QList<QMenu*> menus = window.findChildren<QMenu*>();
    for (const QMenu* menu : menus) {
        const QList<QAction*> actions = menu->actions();
        for (QAction* action : actions) {
            if (action->text().remove(QLatin1Char('&')) == text)
                return action;
        }
    }
    return nullptr;
}

inline void choose(const QMainWindow& window, const QString& text)
{
    QAction* const found = action(window, text);
    QVERIFY2(found, qPrintable(text));
    QVERIFY2(found->isEnabled(), qPrintable(text));
    found->trigger();
}

/// Does something with the dialog that is opened next.
template <typename Dialog>
void inDialog(const std::function<void(Dialog*)>& reaction)
{
    QTimer::singleShot(0, qApp, [reaction] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        reaction(dialog);
    });
}

inline void chooseFile(const QString& path)
{
    inDialog<QFileDialog>([path](QFileDialog* dialog) {
        dialog->selectFile(path);
        static_cast<QDialog*>(dialog)->accept();
    });
}

inline void cancel()
{
    inDialog<QDialog>([](QDialog* dialog) { dialog->reject(); });
}

inline void answer(QMessageBox::StandardButton button)
{
    inDialog<QMessageBox>([button](QMessageBox* box) { box->button(button)->click(); });
}

inline void write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    QVERIFY(file.open(QFile::WriteOnly));
    QCOMPARE(file.write(text), qint64(text.size()));
}

inline QByteArray read(const QString& path)
{
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

} // namespace Drive
