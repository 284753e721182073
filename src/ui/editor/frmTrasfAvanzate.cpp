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
    transformations_ = {{{&SiteRecord::addDate, ui_->chkData, text::addDateHelp},
                         {&SiteRecord::addTime, ui_->chkOra, text::addTimeHelp},
                         {&SiteRecord::dropNulls, ui_->chkNull, text::dropNullsHelp},
                         {&SiteRecord::fixCrLf, ui_->chkCrLf, text::fixCrLfHelp}}};
    for (const Transformation& transformation : transformations_)
        transformation.box->installEventFilter(this);
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
    for (const auto& [value, box, help] : transformations_)
        box->setChecked((site.*value).value_or(box->isChecked()));
}

void frmTrasfAvanzate::FillRecord(SiteRecord& site) const
{
    for (const auto& [value, box, help] : transformations_)
        site.*value = box->isChecked();
}

// The box with the focus explains itself in the text below the boxes.
bool frmTrasfAvanzate::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        for (const auto& [value, box, help] : transformations_) {
            if (watched == box)
                ui_->lblHelpTrasformazioni->setText(Text(help));
        }
    }
    return OptionDialog::eventFilter(watched, event);
}

void frmTrasfAvanzate::OK_Click()
{
    hide();
}

} // namespace corvrec
