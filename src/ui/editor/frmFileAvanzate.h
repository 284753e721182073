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

// The site's two alerts: data file missing for some seconds, little free space on drive C:. The controls are
// the values: loading a site sets them, saving reads them, and the user's changes can be undone by Annulla.
class frmFileAvanzate : public QDialog
{
    Q_OBJECT

public:
    explicit frmFileAvanzate(QWidget* parent = nullptr);
    ~frmFileAvanzate() override;

    // Records the values that Annulla brings back. Before each showing.
    void RegisterUndo() { undo_ = Take(); }

    // The values of the program's start.
    void ShowFirstState() { Show(firstState_); }

    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void chkFile_Click();
    void chkSpazio_Click();
    void OK_Click();
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
