#include "tests/support/text_entry.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDropEvent>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>

namespace corvrec
{

namespace
{

void Type(QWidget& field, const QString& text)
{
    // One key stands in for all letters beyond ASCII.
    for (const QChar letter : Typeable(text))
        QTest::sendKeyEvent(QTest::Click, &field, Qt::Key_Agrave, QString(letter), Qt::NoModifier);
}

} // namespace

void Paste(QWidget& field, const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
    QTest::keyClick(&field, Qt::Key_Insert, Qt::ShiftModifier);
}

void Drop(QWidget& field, const QString& text)
{
    QMimeData data;
    data.setText(text);
    const QPoint middle = field.rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&field, &enter);
    QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&field, &drop);
}

void Commit(QWidget& field, const QString& text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QCoreApplication::sendEvent(&field, &event);
}

QString Typeable(const QString& text)
{
    QString typeable = text;
    typeable.removeIf([](QChar character) { return !character.isPrint(); });
    return typeable;
}

void Enter(QLineEdit& field, const QString& text, Entry way)
{
    field.setFocus();
    field.selectAll();
    QTest::keyClick(&field, Qt::Key_Delete);
    switch (way) {
    case Entry::paste:
        Paste(field, text);
        break;
    case Entry::drop:
        Drop(field, text);
        break;
    case Entry::inputMethod:
        Commit(field, text);
        break;
    case Entry::keys:
        Type(field, text);
        break;
    }
}

} // namespace corvrec
