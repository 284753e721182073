#include "ui/editor/frmTrasfAvanzate.h"

#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"
#include "ui_frmTrasfAvanzate.h"

#include <QEvent>

namespace corvrec
{

frmTrasfAvanzate::frmTrasfAvanzate(QWidget* parent)
    : OptionDialog(parent)
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
}

frmTrasfAvanzate::~frmTrasfAvanzate() = default;

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
    return OptionDialog::eventFilter(watched, event);
}

void frmTrasfAvanzate::OK_Click()
{
    hide();
}

} // namespace corvrec
