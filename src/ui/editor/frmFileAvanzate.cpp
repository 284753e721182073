#include "ui/editor/frmFileAvanzate.h"

#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"
#include "ui_frmFileAvanzate.h"

#include <QShowEvent>

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
    : QDialog(parent)
    , ui_(std::make_unique<Ui::frmFileAvanzate>())
{
    ui_->setupUi(this);
    connect(ui_->chkFile, &QCheckBox::toggled, this, &frmFileAvanzate::chkFile_Click);
    connect(ui_->chkSpazio, &QCheckBox::toggled, this, &frmFileAvanzate::chkSpazio_Click);
    connect(ui_->OK, &QPushButton::clicked, this, &frmFileAvanzate::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmFileAvanzate::Annulla_Click);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    CentreDialog(*this);
    firstState_ = Take();
}

frmFileAvanzate::~frmFileAvanzate() = default;

frmFileAvanzate::Values frmFileAvanzate::Take() const
{
    return {.file = ui_->chkFile->isChecked(),
            .seconds = ui_->txtFile->text(),
            .space = ui_->chkSpazio->isChecked(),
            .megabytes = ui_->txtSpazio->text()};
}

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

void frmFileAvanzate::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        FocusField(*ui_->chkFile);
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
    if (ui_->chkFile->isChecked())
        CloseUnlessEmpty(*ui_->txtFile, text::fileTimeOutMissing);
    else if (ui_->chkSpazio->isChecked())
        CloseUnlessEmpty(*ui_->txtSpazio, text::diskThresholdMissing);
    else
        hide();
}

void frmFileAvanzate::CloseUnlessEmpty(QLineEdit& field, TextId message)
{
    if (!field.text().isEmpty()) {
        hide();
        return;
    }
    ShowMessage(this, Text(message));
    FocusField(field);
}

void frmFileAvanzate::Show(const Values& values)
{
    ui_->chkFile->setChecked(values.file);
    ui_->txtFile->setText(values.seconds);
    ui_->chkSpazio->setChecked(values.space);
    ui_->txtSpazio->setText(values.megabytes);
}

void frmFileAvanzate::Annulla_Click()
{
    Show(undo_);
    hide();
}

} // namespace corvrec
