#include "tests/support/controls.h"

#include "tests/support/activation.h"
#include "ui/widgets/check_list.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTest>
#include <QWheelEvent>

namespace corvrec
{

namespace
{

QWidget& Named(QWidget& window, const QString& name)
{
    auto* const control = window.findChild<QWidget*>(name);
    if (control == nullptr)
        qFatal("no control %s", qPrintable(name));
    return *control;
}

// More steps than this mean that Tab does not return to the start.
constexpr int kMostStops = 100;

QString MarkedRows(const CheckList& list)
{
    QStringList rows;
    for (int row = 0; row < list.count(); ++row) {
        if (list.Marked(row))
            rows.append(QString::number(row));
    }
    return rows.join(' ');
}

} // namespace

void PickRow(QComboBox& list, int row)
{
    QTest::keyClick(&list, Qt::Key_F4);
    QVERIFY(QTest::qWaitFor([&list] { return list.view()->isVisible(); }));
    QTest::keyClick(list.view(), Qt::Key_Home);
    for (int i = 0; i < row; ++i)
        QTest::keyClick(list.view(), Qt::Key_Down);
    QTest::keyClick(list.view(), Qt::Key_Return);
    BringToFront(*list.window()); // needed without a window manager
    QCOMPARE(list.currentIndex(), row);
}

bool TurnWheelOver(QWidget& control)
{
    const QPointF middle = control.rect().center();
    QWheelEvent wheel(middle, control.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&control, &wheel);
    return wheel.isAccepted();
}

QPoint CaretPlace(QLineEdit& field, int position)
{
    QPoint place(0, field.height() / 2);
    while (place.x() < field.width() && field.cursorPositionAt(place) != position)
        ++place.rx();
    return place;
}

void Drag(QWidget& control, QPoint from, QPoint to)
{
    QTest::mousePress(&control, Qt::LeftButton, {}, from);
    QMouseEvent move(QEvent::MouseMove, to, control.mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&control, &move);
    QTest::mouseRelease(&control, Qt::LeftButton, {}, to);
}

QString Shown(const QWidget& control)
{
    if (const auto* const field = qobject_cast<const QLineEdit*>(&control))
        return field->text();
    if (const auto* const list = qobject_cast<const QComboBox*>(&control))
        return list->currentText();
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&control))
        return button->isChecked() ? "on" : "off";
    if (const auto* const list = qobject_cast<const CheckList*>(&control))
        return MarkedRows(*list);
    if (const auto* const label = qobject_cast<const QLabel*>(&control))
        return label->text();
    qFatal("%s shows nothing", qPrintable(control.objectName()));
}

bool HasColour(QWidget& control, const QColor& colour)
{
    const QImage image = control.grab().toImage();
    for (int i = 0; i < image.width() * image.height(); ++i) {
        if (image.pixelColor(i % image.width(), i / image.width()) == colour)
            return true;
    }
    return false;
}

QStringList AllShown(const QWidget& window)
{
    QStringList states;
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        const auto* const button = qobject_cast<const QAbstractButton*>(control);
        if ((button != nullptr && button->isCheckable()) ||
            qobject_cast<const QLineEdit*>(control) != nullptr ||
            qobject_cast<const QComboBox*>(control) != nullptr ||
            qobject_cast<const CheckList*>(control) != nullptr)
            states.append(control->objectName() + ": " + Shown(*control));
    }
    states.sort();
    return states;
}

void ExpectShown(QWidget& window, const QStringList& states)
{
    QStringList shown;
    for (const QString& state : states) {
        const QString name = state.section(": ", 0, 0);
        shown.append(name + ": " + Shown(Named(window, name)));
    }
    QCOMPARE(shown, states);
}

void Set(QWidget& window, const QStringList& states)
{
    for (const QString& state : states) {
        QWidget& control = Named(window, state.section(": ", 0, 0));
        const QString shown = state.section(": ", 1);
        if (auto* const field = qobject_cast<QLineEdit*>(&control))
            field->setText(shown);
        else if (auto* const list = qobject_cast<QComboBox*>(&control))
            list->setCurrentIndex(list->findText(shown));
        else if (auto* const button = qobject_cast<QAbstractButton*>(&control))
            button->setChecked(shown == "on");
        else if (auto* const days = qobject_cast<CheckList*>(&control))
            for (int row = 0; row < days->count(); ++row)
                days->SetMarked(row, shown.contains(QString::number(row)));
    }
}

bool IsEnabled(const QWidget& control)
{
    return control.isEnabledTo(control.parentWidget());
}

QStringList TabRound(QWidget& window)
{
    QStringList names;
    const QWidget* const first = window.focusWidget();
    do {
        names.append(window.focusWidget()->objectName());
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    } while (window.focusWidget() != first && names.size() < kMostStops);
    return names;
}

namespace
{

bool IsReadAfter(const QWidget& predecessor, const QWidget& control)
{
    const QWidget* group = control.parentWidget();
    while (!group->isAncestorOf(&predecessor))
        group = group->parentWidget();
    const auto area = [group](const QWidget* part) {
        while (part->parentWidget() != group)
            part = part->parentWidget();
        return part->geometry();
    };
    const QRect before = area(&predecessor);
    const QRect after = area(&control);
    return after.left() > before.right() || after.top() > before.bottom();
}

} // namespace

QStringList OutOfReadingOrder(const QWidget& window, const QStringList& names)
{
    QStringList found;
    for (qsizetype i = 1; i < names.size(); ++i) {
        if (!IsReadAfter(*window.findChild<QWidget*>(names[i - 1]), *window.findChild<QWidget*>(names[i])))
            found.append(names[i]);
    }
    return found;
}

QString AccessibleName(QWidget& control)
{
    if (!control.accessibleName().isEmpty())
        return control.accessibleName();
    // Not the interface's own name: on platforms with label relations, a list reports its current entry as
    // its name.
    for (const auto& [label, relation] : QAccessible::queryAccessibleInterface(&control)->relations()) {
        if (relation.testFlag(QAccessible::Label))
            return label->text(QAccessible::Name);
    }
    return {};
}

QStringList LabelsWithoutBuddy(const QWidget& window)
{
    QStringList captions;
    for (const QLabel* const label : window.findChildren<QLabel*>()) {
        if (label->text().contains('&') && label->buddy() == nullptr)
            captions.append(label->text());
    }
    return captions;
}

QStringList NamelessFields(const QWidget& window)
{
    QStringList names;
    for (QWidget* const field : window.findChildren<QWidget*>()) {
        const bool isField = qobject_cast<QLineEdit*>(field) != nullptr ||
                             qobject_cast<QComboBox*>(field) != nullptr ||
                             qobject_cast<CheckList*>(field) != nullptr;
        if (isField && AccessibleName(*field).isEmpty())
            names.append(field->objectName());
    }
    return names;
}

} // namespace corvrec
