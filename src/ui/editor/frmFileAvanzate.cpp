#include "ui/editor/frmFileAvanzate.h"

#include "core/site/new_site.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/qt_text.h"
#include "ui_frmFileAvanzate.h"

namespace corvrec
{

namespace
{

void ShowAlert(const std::optional<Alert>& alert, QCheckBox& box, QLineEdit& field)
{
    if (!alert)
        return;
    box.setChecked(alert->on);
    if (alert->limit)
        field.setText(ToQt(*alert->limit));
}

Alert TakeAlert(const QCheckBox& box, const QLineEdit& field)
{
    return {.on = box.isChecked(), .limit = ToStd(field.text())};
}

} // namespace

frmFileAvanzate::frmFileAvanzate(QWidget* parent)
    : OptionDialog(parent)
    , ui_(std::make_unique<Ui::frmFileAvanzate>())
{
    ui_->setupUi(this);
    connect(ui_->chkFile, &QCheckBox::toggled, this, &frmFileAvanzate::chkFile_Click);
    connect(ui_->chkSpazio, &QCheckBox::toggled, this, &frmFileAvanzate::chkSpazio_Click);
    connect(ui_->OK, &QPushButton::clicked, this, &frmFileAvanzate::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmFileAvanzate::Annulla_Click);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    ShowRecord(NewSite({}));
    CentreDialog(*this);
}

frmFileAvanzate::~frmFileAvanzate() = default;

void frmFileAvanzate::ShowRecord(const SiteRecord& site)
{
    ShowAlert(site.fileAlert, *ui_->chkFile, *ui_->txtFile);
    ShowAlert(site.diskAlert, *ui_->chkSpazio, *ui_->txtSpazio);
}

void frmFileAvanzate::FillRecord(SiteRecord& site) const
{
    site.fileAlert = TakeAlert(*ui_->chkFile, *ui_->txtFile);
    site.diskAlert = TakeAlert(*ui_->chkSpazio, *ui_->txtSpazio);
}

void frmFileAvanzate::chkFile_Click()
{
    const bool on = ui_->chkFile->isChecked();
    ui_->txtFile->setEnabled(on);
    ui_->lblFile->setEnabled(on);
}

void frmFileAvanzate::chkSpazio_Click()
{
    const bool on = ui_->chkSpazio->isChecked();
    ui_->txtSpazio->setEnabled(on);
    ui_->lblSpazio->setEnabled(on);
}

void frmFileAvanzate::OK_Click()
{
    // Deliberate: the disk threshold is checked only when the file alert is off.
    if (ui_->chkFile->isChecked()
            ? RequireText(*ui_->txtFile, text::fileTimeOutMissing)
            : !ui_->chkSpazio->isChecked() || RequireText(*ui_->txtSpazio, text::diskThresholdMissing))
        hide();
}

} // namespace corvrec
