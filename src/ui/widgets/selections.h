#pragma once

#include "core/site/code_tables.h"

#include <QComboBox>
#include <QStringList>

#include <span>

namespace corvrec
{

// Fills a list without running a rule and without choosing an entry.
void FillList(QComboBox& list, const QStringList& entries);

// The shown texts of a code table, in row order.
QStringList ShownTexts(std::span<const CodeRow> table);

// Chooses a row from code, silently; -1 chooses none. Lists with a rule run it after this, also for the same
// row.
void SetRow(QComboBox& list, int row);

// Chooses a row and runs the list's rule, also when the row stays the same.
template <class Form>
void SelectRow(QComboBox& list, int row, Form& form, void (Form::*rule)())
{
    SetRow(list, row);
    (form.*rule)();
}

// Chooses the first entry that begins with the text, letter case aside (CB_SELECTSTRING); no entry, or an
// empty text: the choice stays. No rule runs.
void SelectByPrefix(QComboBox& list, const QString& text);

// The wheel moves a list's choice only while the list has the focus. For every combo box below the window.
void GuardWheel(QWidget& window);

} // namespace corvrec
