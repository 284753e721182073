#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QApplication;
class QFocusEvent;
class QWidget;

namespace corvrec
{

// Dynamic property of a window, or of a page of its tab control: its chapter in the user's guide.
inline constexpr const char* kGuideChapter = "guida";

// Dynamic property of a control: the number of its tool tip, written like a tag ("20101;").
inline constexpr const char* kToolTip = "suggerimento";

// Sets the window's title and all captions in it (labels, buttons, groups, tabs) from the string table, as
// named by the dynamic property "tag". A caption stays as drawn in the form when its tag is missing or
// unusable, or its text is missing. Sets the tool tips in the same way, as named by kToolTip; a field's label
// gets the field's. A tool tip is also the control's description for screen readers.
void LocaliseDialog(QWidget& window);

// Makes the mnemonic of a button, check box or option button click it at once. By default Qt waits a tenth of
// a second and then clicks, whatever has been pressed meanwhile and whatever is in front of the window by
// then.
void ClickAtOnce(QWidget& window);

// Makes Tab lead to the selected option button of a group, also when the program has selected it. By default
// Qt leads to the first one until the group has had the focus.
void TabToChosenOption(QWidget& window);

// Centres the window on its parent's screen (without a parent, the primary screen). It becomes as large as
// its contents and title need, at most the screen less the window's frame; contents that cannot be made small
// enough get scroll bars. To be called before the first show, once the texts are set.
void CentreDialog(QWidget& window);

// Whether the focus moves between controls of the program. False when another program comes to the front or
// leaves it, or when a menu opens or closes: the rules for entering and leaving a field do not run then.
bool IsWithinWindow(const QFocusEvent& event);

// Brings the field's tab page to the front and focuses the field; if the field cannot take the focus, the
// first control of the page or window that can. The rules for leaving the old field and entering the new one
// run, once each, even though the window is inactive just after one of its message boxes has closed. A field
// that already has the focus gets it again but is not left.
void FocusField(QWidget& field);

// Focuses the first control of the window, in tab order, that can take the focus. In an inactive window no
// rule runs: the field being left may belong to another site.
void FocusFirst(QWidget& window);

// Gives the keyboard to a window's owner when the window is hidden. When two windows of a program close at
// once, some window managers give it to the window between them, which has gone, and every key is dead until
// a click.
class FocusReturn : public QObject
{
public:
    explicit FocusReturn(QApplication& application);
    bool eventFilter(QObject* watched, QEvent* event) override;
};

// Shows the busy pointer on some windows until Restore or the end of its lifetime. A window may be destroyed
// earlier.
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
