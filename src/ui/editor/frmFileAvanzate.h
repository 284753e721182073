#pragma once

#include "core/site/site_record.h"
#include "core/text_ids.h"

#include <QDialog>
#include <QString>

#include <memory>

class QLineEdit;

namespace Ui
{
class frmFileAvanzate;
}

namespace corvrec
{

// The site's two alerts: data file missing for some seconds, and little free space on drive C:. The controls
// hold the values: loading a site sets them, saving reads them, and Annulla undoes the user's changes.
class frmFileAvanzate : public QDialog
{
    Q_OBJECT

public:
    explicit frmFileAvanzate(QWidget* parent = nullptr);
    ~frmFileAvanzate() override;

    // Remembers the values that Annulla restores. To be called before each showing.
    void RegisterUndo() { undo_ = Take(); }

    // Resets the controls to their values at the program's start.
    void ShowFirstState() { Show(firstState_); }

    // An alert that the record lacks stays as it is.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // Escape and the close box act like the Annulla button.
    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void chkFile_Click();
    void chkSpazio_Click();
    void OK_Click();

    // Hides the dialog, or shows the message when the field is empty.
    void CloseUnlessEmpty(QLineEdit& field, TextId message);
    void Annulla_Click();

    struct Values {
        bool file = false;
        QString seconds;
        bool space = false;
        QString megabytes;
    };

    Values Take() const;
    void Show(const Values& values);

    std::unique_ptr<Ui::frmFileAvanzate> ui_;
    Values firstState_;
    Values undo_;
};

} // namespace corvrec
