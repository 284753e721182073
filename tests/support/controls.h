#pragma once

#include "tests/support/activation.h"

#include <QPoint>
#include <QString>
#include <QStringList>

class QComboBox;
class QLineEdit;

namespace corvrec
{

// Picks an entry as a user does at the keyboard: opens the list, goes to the row, presses Enter.
void PickRow(QComboBox& list, int row);

// Turns the wheel one notch down over the control; whether the control took it.
bool TurnWheelOver(QWidget& control);

// Where a click puts the caret in front of the character at this position.
QPoint CaretPlace(QLineEdit& field, int position);

// Presses the left button at one place of the control and releases it at another one.
void Drag(QWidget& control, QPoint from, QPoint to);

// What a control shows: the text of a field, a label or a list's chosen entry; "on" or "off" for a box or an
// option button; the numbers of the marked rows for a list with check marks ("0 1 6").
QString Shown(const QWidget& control);

// The control's own flag, whatever holds for the page or the group around it.
bool IsEnabled(const QWidget& control);

// Names of the controls that Tab reaches, from the one with the focus on, once round the window.
QStringList TabRound(QWidget& window);

// What a screen reader calls the control: its own accessible name, else its label's caption.
QString AccessibleName(QWidget& control);

// Captions with a mnemonic that leads to no field.
QStringList LabelsWithoutBuddy(const QWidget& window);

// Names of the fields and lists of the window that a screen reader cannot tell apart: no name, or only the
// entry chosen.
QStringList NamelessFields(const QWidget& window);

} // namespace corvrec
