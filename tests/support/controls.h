#pragma once

#include "tests/support/activation.h"

#include <QPoint>
#include <QString>
#include <QStringList>

class QColor;
class QComboBox;
class QLineEdit;

namespace corvrec
{

// Picks an entry from the keyboard: opens the list, moves to the row, presses Enter.
void PickRow(QComboBox& list, int row);

// Turns the wheel one notch down over the control. Returns whether the control accepted it.
bool TurnWheelOver(QWidget& control);

// The position where a click puts the caret before this character.
QPoint CaretPlace(QLineEdit& field, int position);

// Presses the left button at one point of the control and releases it at another.
void Drag(QWidget& control, QPoint from, QPoint to);

// What a control shows: the text of a field or label, or a list's current entry; "on" or "off" for a check
// box or option button; the numbers of the checked rows for a check list ("0 1 6").
QString Shown(const QWidget& control);

// Whether the control, painted now, has a pixel of exactly this colour.
bool HasColour(QWidget& control, const QColor& colour);

// The states of all controls that hold a value, "name: shown" each, sorted.
QStringList AllShown(const QWidget& window);

// Compares what controls show with these states.
void ExpectShown(QWidget& window, const QStringList& states);

// Gives controls these states without keys or mouse. Their rules run.
void Set(QWidget& window, const QStringList& states);

// The control's own flag, ignoring the page or group around it.
bool IsEnabled(const QWidget& control);

// Names of the controls that Tab reaches, starting with the focused one, once round the window.
QStringList TabRound(QWidget& window);

// The controls that break the reading order: neither to the right of their predecessor nor below it, or in a
// group that is neither to the right of the predecessor's group nor below it.
QStringList OutOfReadingOrder(const QWidget& window, const QStringList& names);

// What a screen reader calls the control: its accessible name, or else its label's caption.
QString AccessibleName(QWidget& control);

// Labels whose mnemonic belongs to no field.
QStringList LabelsWithoutBuddy(const QWidget& window);

// Names of the fields and lists that a screen reader cannot distinguish: without a name, or with only the
// current entry.
QStringList NamelessFields(const QWidget& window);

} // namespace corvrec
