#include "ui/widgets/messages.h"

#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace corvrec
{

namespace
{

QMessageBox::Icon IconOf(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::information:
        return QMessageBox::Information;
    case MessageIcon::stop:
        return QMessageBox::Critical;
    case MessageIcon::exclamation:
        break;
    }
    return QMessageBox::Warning;
}

void Fill(QMessageBox& box, const QString& text, MessageIcon icon, const QString& title)
{
    box.setProperty(kGuideChapter, "messaggi");
    box.setWindowModality(Qt::WindowModal); // blocks only its own window: the guide stays usable
    box.setIcon(IconOf(icon));
    box.setWindowTitle(title.isEmpty() ? Text(text::application) : title);
    box.setTextFormat(Qt::PlainText); // site names and paths are not mark-up
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QString lines = text;
    box.setText(lines.replace(u'\r', u'\n')); // a label does not break lines at carriage returns
    // By default a label whose text can be selected by keyboard takes the focus by a click only.
    for (QLabel* const label : box.findChildren<QLabel*>()) {
        if (label->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard))
            label->setFocusPolicy(Qt::StrongFocus);
    }
}

} // namespace

void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon, const QString& title)
{
    QMessageBox box(parent);
    Fill(box, text, icon, title);
    QPushButton* const ok = box.addButton(QMessageBox::Ok);
    // As in all other windows; some desktops give this button an icon and a mnemonic.
    ok->setIcon({});
    ok->setText("OK");
    box.setDefaultButton(ok);
    box.exec();
}

bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon, const QString& title)
{
    QMessageBox box(parent);
    Fill(box, text, icon, title);
    QPushButton* const yes = box.addButton(Text(text::yes), QMessageBox::YesRole);
    QPushButton* const no = box.addButton(Text(text::no), QMessageBox::NoRole);
    box.setDefaultButton(yes);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

} // namespace corvrec
