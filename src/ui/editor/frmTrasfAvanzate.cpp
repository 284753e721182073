#include "ui/editor/frmTrasfAvanzate.h"

#include "core/site/site_record.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"
#include "ui_frmTrasfAvanzate.h"

#include <QEvent>
#include <QShowEvent>

namespace corvrec
{

frmTrasfAvanzate::frmTrasfAvanzate(QWidget* parent)
    : QDialog(parent)
    , ui_(std::make_unique<Ui::frmTrasfAvanzate>())
{
    ui_->setupUi(this);
    connect(ui_->OK, &QPushButton::clicked, this, &frmTrasfAvanzate::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmTrasfAvanzate::Annulla_Click);
    for (QCheckBox* const box : {ui_->chkData, ui_->chkOra, ui_->chkNull, ui_->chkCrLf})
        box->installEventFilter(this);
    LocaliseDialog(*this);
    ClickAtOnce(*this);

    // Measured with the longest help text, so that none is clipped.
    ui_->lblHelpTrasformazioni->setText(Text(text::fixCrLfHelp));
    CentreDialog(*this);
    ui_->lblHelpTrasformazioni->clear();
    firstState_ = Take();
}

frmTrasfAvanzate::~frmTrasfAvanzate() = default;

frmTrasfAvanzate::Values frmTrasfAvanzate::Take() const
{
    return {.fixCrLf = ui_->chkCrLf->isChecked(),
            .addDate = ui_->chkData->isChecked(),
            .dropNulls = ui_->chkNull->isChecked(),
            .addTime = ui_->chkOra->isChecked()};
}

void frmTrasfAvanzate::ShowRecord(const SiteRecord& site)
{
    ui_->chkData->setChecked(site.addDate.value_or(ui_->chkData->isChecked()));
    ui_->chkOra->setChecked(site.addTime.value_or(ui_->chkOra->isChecked()));
    ui_->chkNull->setChecked(site.dropNulls.value_or(ui_->chkNull->isChecked()));
    ui_->chkCrLf->setChecked(site.fixCrLf.value_or(ui_->chkCrLf->isChecked()));
}

void frmTrasfAvanzate::FillRecord(SiteRecord& site) const
{
    site.addDate = ui_->chkData->isChecked();
    site.addTime = ui_->chkOra->isChecked();
    site.dropNulls = ui_->chkNull->isChecked();
    site.fixCrLf = ui_->chkCrLf->isChecked();
}

void frmTrasfAvanzate::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        FocusField(*ui_->chkData);
}

// The box with the focus explains itself in the text below the boxes.
bool frmTrasfAvanzate::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        if (watched == ui_->chkData)
            ui_->lblHelpTrasformazioni->setText(Text(text::addDateHelp));
        else if (watched == ui_->chkOra)
            ui_->lblHelpTrasformazioni->setText(Text(text::addTimeHelp));
        else if (watched == ui_->chkNull)
            ui_->lblHelpTrasformazioni->setText(Text(text::dropNullsHelp));
        else if (watched == ui_->chkCrLf)
            ui_->lblHelpTrasformazioni->setText(Text(text::fixCrLfHelp));
    }
    return QDialog::eventFilter(watched, event);
}

void frmTrasfAvanzate::OK_Click()
{
    hide();
}

void frmTrasfAvanzate::Show(const Values& values)
{
    ui_->chkCrLf->setChecked(values.fixCrLf);
    ui_->chkData->setChecked(values.addDate);
    ui_->chkNull->setChecked(values.dropNulls);
    ui_->chkOra->setChecked(values.addTime);
}

void frmTrasfAvanzate::Annulla_Click()
{
    Show(undo_);
    hide();
}

} // namespace corvrec
