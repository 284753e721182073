#pragma once

#include "core/site/code_tables.h"

#include <QComboBox>
#include <QStringList>

#include <span>

namespace corvrec
{

// Replaces a list's entries. Runs no rule and selects nothing.
void FillList(QComboBox& list, const QStringList& entries);

// The displayed texts of a table, in row order.
QStringList ShownTexts(std::span<const CodeRow> table);
QStringList ShownTexts(std::span<const DeviceRow> devices);

// Selects a row without running the list's rule; -1 selects none. For a list with a rule see SelectRow.
void SetRow(QComboBox& list, int row);

// Selects a row and runs the list's rule, also when the row was already selected.
template <class Form>
void SelectRow(QComboBox& list, int row, Form& form, void (Form::*rule)())
{
    SetRow(list, row);
    (form.*rule)();
}

// Selects the first entry that begins with the text, ignoring case, without running a rule (like
// CB_SELECTSTRING). Without such an entry, or for an empty text, nothing changes.
void SelectByPrefix(QComboBox& list, const QString& text);

// Makes the wheel change the selection of a combo box only while it has the focus. Applies to every combo box
// in the window.
void GuardWheel(QWidget& window);

} // namespace corvrec
