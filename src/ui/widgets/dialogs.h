#pragma once

#include <QList>
#include <QPointer>

class QFocusEvent;
class QWidget;

namespace corvrec
{

// Dynamic property of a window, or of a page of its tab control: its chapter in the user's guide.
inline constexpr const char* kGuideChapter = "guida";

// Dynamic property of a control: the number of its tool tip, in the form of a tag ("20101;").
inline constexpr const char* kToolTip = "suggerimento";

// Sets the window's title and every caption below it (labels, buttons, groups, tabs) from the string table,
// by the dynamic property "tag". A caption without a usable tag, or whose text is missing, stays as the form
// was drawn. In the same way sets the tool tips, by kToolTip; the label of a field gets that of the field. A
// tool tip is also the control's description for a screen reader.
void LocaliseDialog(QWidget& window);

// The mnemonic of a button, a check box or an option button clicks it at once. By itself Qt lets a tenth of a
// second go by, and then clicks, whatever has been pressed meanwhile and lies in front of the window by now.
void ClickAtOnce(QWidget& window);

// Tab leads to the chosen one of a group of option buttons, also where the program has chosen it. By itself
// Qt leads to the first one until the focus has been in the group.
void TabToChosenOption(QWidget& window);

// Puts the window into the middle of the screen that holds its parent (else the primary screen). It is as
// large as its contents and its title need, up to the screen less the window's frame; contents that cannot be
// made small enough get scroll bars. Before the first show, after the texts are in.
void CentreDialog(QWidget& window);

// Whether the focus moves from one control of the program to another. It does not when another program comes
// to the front or goes, or a menu opens or closes: the rules of leaving and getting a field do not run then.
bool IsWithinWindow(const QFocusEvent& event);

// Brings the tab page that holds the field to the front and puts the caret into the field; when the field
// cannot take the focus, into the first control of the page (or window) that can.
// The rules of the field that is left and of the one that gets the focus run, once each, although the window
// is not active when a message box of its own has just closed. A field that has the focus already gets it
// again, and is not left.
void FocusField(QWidget& field);

// The first control of the window, in tab order, that can take the focus gets it. No rule runs in a window
// that is not active: the field that is left may be another site's.
void FocusFirst(QWidget& window);

// The busy pointer on some windows, until Restore or the end of its life.
class BusyPointer
{
public:
    explicit BusyPointer(const QList<QWidget*>& windows);
    ~BusyPointer();
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

    void Restore();

private:
    QList<QPointer<QWidget>> windows_;
};

} // namespace corvrec
