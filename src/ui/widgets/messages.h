#pragma once

#include <QString>

class QWidget;

namespace corvrec
{

enum class MessageIcon { exclamation, information, stop };

// A message box with an OK button. An empty title stands for the application's (text 11007). Line breaks in
// the text are carriage returns; the text is plain and can be selected and copied.
void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::exclamation,
                 const QString& title = {});

// A question with the buttons Yes (the default) and No (Escape, close box); true for Yes.
bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon, const QString& title);

} // namespace corvrec
