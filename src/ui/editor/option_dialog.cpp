#include "ui/editor/option_dialog.h"

#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/texts.h"

#include <QLineEdit>
#include <QShowEvent>

namespace corvrec
{

void OptionDialog::RegisterUndo()
{
    FillRecord(undo_);
}

void OptionDialog::Open(QWidget& button)
{
    button.setFocus();
    RegisterUndo();
    exec();
}

void OptionDialog::Annulla_Click()
{
    RestoreUndo();
    hide();
}

bool OptionDialog::Require(bool isMet, QWidget& field, TextId message)
{
    if (!isMet) {
        ShowMessage(this, Text(message));
        FocusField(field);
    }
    return isMet;
}

bool OptionDialog::RequireText(QLineEdit& field, TextId message)
{
    return Require(!field.text().isEmpty(), field, message);
}

void OptionDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        FocusField(*this);
}

} // namespace corvrec
