#pragma once

#include <QString>

class QWidget;

namespace corvrec
{

enum class MessageIcon { exclamation, information, stop };

// A message box with an OK button. An empty title means the application's (text 11007). The text is plain,
// with carriage returns as line breaks, and can be selected and copied.
void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon = MessageIcon::exclamation,
                 const QString& title = {});

// A question with the buttons Yes (default) and No (also Escape and the close box). True for Yes.
bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon, const QString& title);

} // namespace corvrec
