#pragma once

#include "core/site/site_record.h"
#include "core/text_ids.h"

#include <QDialog>

class QLineEdit;

namespace corvrec
{

// A dialog of the site editor with some of a site's values, created once and hidden between uses. The
// controls hold the values: loading a site sets them, saving reads them, and Annulla undoes the user's
// changes.
class OptionDialog : public QDialog
{
    Q_OBJECT

public:
    // Remembers the values that Annulla restores. To be called before each showing.
    virtual void RegisterUndo();

    // Shows the dialog for this button of the editor. Focuses the button first, because a mnemonic clicks it
    // without doing so: the field being left then runs its rule.
    void Open(QWidget& button);

    // A value that the record lacks stays as it is.
    virtual void ShowRecord(const SiteRecord& site) = 0;
    virtual void FillRecord(SiteRecord& site) const = 0;

    // Escape and the close box act like the Annulla button.
    void reject() override { Annulla_Click(); }

protected:
    using QDialog::QDialog;

    void Annulla_Click();
    virtual void RestoreUndo() { ShowRecord(undo_); }

    // Returns whether the condition is met; if not, shows the message and focuses the field.
    bool Require(bool isMet, QWidget& field, TextId message);
    bool RequireText(QLineEdit& field, TextId message);

    // Focuses the first control.
    void showEvent(QShowEvent* event) override;

    SiteRecord undo_;
};

} // namespace corvrec
