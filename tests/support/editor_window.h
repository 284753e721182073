#pragma once

#include "tests/support/controls.h"
#include "tests/support/modal_visit.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include <functional>
#include <optional>
#include <string_view>

namespace corvrec
{

// The site editor over the real site list, opened as the list opens it, but not modally, so that the test can
// act meanwhile.
class EditorWindow : public SiteWindow
{
public:
    explicit EditorWindow(std::string_view settings,
                          std::optional<std::string_view> catalogue = std::nullopt);

    void Add();     // opens it for a new site
    void AddRoma(); // the same, and fills in what OK requires: the name Roma, the code RM, three files
    void Open(int row = 0); // opens it for the site in this row of the list

    template <class Control>
    Control& At(const char* name)
    {
        return Part<Control>(Editor(), name);
    }
    QLineEdit& Field(const char* name) { return At<QLineEdit>(name); }
    QComboBox& Choice(const char* name) { return At<QComboBox>(name); }
    QCheckBox& Box(const char* name) { return At<QCheckBox>(name); }

    // What the control with this name shows, in the editor or in one of its option dialogs.
    QString Shows(const char* name);
    void ExpectShown(const QStringList& states) { corvrec::ExpectShown(Editor(), states); }
    void Set(const QStringList& states) { corvrec::Set(Editor(), states); }

    // Brings the control's page to the front, as a user has to.
    void Turn(QWidget& control);

    void Pick(const char* list, int row);
    void Click(const char* button);
    void
    Choose(const QStringList& choices); // clicks buttons ("optRemoto"), picks entries ("cboHandS: Software")
    void Retype(const char* field, const QString& text);                       // replaces the field's text
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier); // on the focused control

    // Clicks the button and acts in the dialog that it opens, which is closed then if it is still open.
    template <class Dialog>
    void Visit(const char* button, const std::function<void(Dialog&)>& act)
    {
        const ModalVisit<Dialog> visit([&act](Dialog& dialog) {
            act(dialog);
            if (dialog.isVisible())
                dialog.reject();
        });
        Click(button);
    }

    int Tab();
    QString Focus(); // name of the focused control

private:
    void Show();

    UnansweredBoxes unansweredBoxes_;
};

} // namespace corvrec
