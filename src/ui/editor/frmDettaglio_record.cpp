// The only place where the editor's controls and the site record meet. In the order in which a site is
// loaded.
#include "core/file/section.h"
#include "core/site/site_list.h"
#include "ui/editor/frmDettaglio.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/selections.h"
#include "ui_frmDettaglio.h"

namespace corvrec
{

namespace
{

void ShowFlowCharacter(const std::optional<FlowCharacter>& character, QCheckBox& box, QLineEdit& field)
{
    // A field drops a line break, so it would stay empty, and the next save would stop at it.
    if (!character || WithoutLineBreaks(character->text).empty())
        return;
    box.setChecked(character->control);
    field.setText(ToQt(character->text));
}

// A long path shows its beginning.
void ShowPath(const std::optional<std::string>& path, QLineEdit& field)
{
    if (!path)
        return;
    field.setText(CapitaliseAfter(ToQt(*path), '\\'));
    field.setCursorPosition(0);
}

FlowCharacter TakeFlowCharacter(const QCheckBox& box, const QLineEdit& field)
{
    return {.control = box.isChecked(), .text = ToStd(field.text())};
}

std::optional<int> TakeRow(const QComboBox& list)
{
    return list.currentIndex() < 0 ? std::nullopt : std::optional(list.currentIndex());
}

int TakeWeekdays(const CheckList& list)
{
    int weekdays = 0;
    for (int row = 0; row < list.count(); ++row)
        weekdays |= list.Marked(row) ? kWeekdayRows.at(static_cast<std::size_t>(row)) : 0;
    return weekdays;
}

} // namespace

void frmDettaglio::ShowRecord(const SiteRecord& site)
{
    ShowPages(site);
    transformations_->ShowRecord(site);
    modem_->ShowRecord(site);
    alerts_->ShowRecord(site);
}

void frmDettaglio::ShowPages(const SiteRecord& site)
{
    ShowConnection(site);
    ShowSchedule(site);
    ShowFiles(site);
}

void frmDettaglio::ShowConnection(const SiteRecord& site)
{
    // The device first: its rule decides which speeds there are.
    if (site.device)
        SelectRow(*ui_->cboTipoConn, *site.device, *this, &frmDettaglio::cboTipoConn_Click);
    if (site.remote)
        (*site.remote ? ui_->optRemoto : ui_->optLocale)->setChecked(true);
    if (site.handshake)
        SelectRow(*ui_->cboHandS, *site.handshake, *this, &frmDettaglio::cboHandS_Click);
    ShowFlowCharacter(site.xon, *ui_->chkXon, *ui_->txtXon);
    ShowFlowCharacter(site.xoff, *ui_->chkXoff, *ui_->txtXoff);
    if (site.baud)
        SelectByPrefix(*ui_->cboVelocita, ToQt(*site.baud));
    if (site.dataBits)
        SelectByPrefix(*ui_->cboBitDati, ToQt(*site.dataBits));
    if (site.parity)
        SetRow(*ui_->cboParita, *site.parity);
    if (site.stopBits)
        SelectByPrefix(*ui_->cboBitStop, ToQt(*site.stopBits));
}

void frmDettaglio::ShowSchedule(const SiteRecord& site)
{
    if (site.enabled)
        ui_->chkAbilitato->setChecked(*site.enabled);
    // The kind before the interval: its rule resets the interval.
    if (site.schedule)
        SelectRow(*ui_->cboRicorrenza, static_cast<int>(*site.schedule), *this,
                  &frmDettaglio::cboRicorrenza_Click);
    for (int row = 0; site.weekdays && row < ui_->lstGiorni->count(); ++row) {
        // Deliberate: marks are only added. A day that is not stored keeps its mark.
        if ((*site.weekdays & kWeekdayRows.at(static_cast<std::size_t>(row))) != 0)
            ui_->lstGiorni->SetMarked(row, true);
    }
    if (site.interval)
        ui_->mskValore->setText(ToQt(*site.interval));
    if (site.startTime)
        ui_->mskOrario->setText(ToQt(*site.startTime));
    if (site.marked)
        marked_ = *site.marked;
}

void frmDettaglio::ShowFiles(const SiteRecord& site)
{
    ShowPath(site.dataFile, *ui_->txtDati);
    ShowPath(site.exchangeFile, *ui_->txtDati2);
    ShowPath(site.historyFile, *ui_->txtStorico);
    ShowPath(site.logFile, *ui_->txtLog);
}

// Fills every field, since a save writes every key. A field that holds a row stays empty when its list has no
// selection.
SiteRecord frmDettaglio::TakeRecord() const
{
    SiteRecord site;
    site.device = TakeRow(*ui_->cboTipoConn);
    site.remote = !ui_->optLocale->isChecked();
    site.handshake = TakeRow(*ui_->cboHandS);
    site.xon = TakeFlowCharacter(*ui_->chkXon, *ui_->txtXon);
    site.xoff = TakeFlowCharacter(*ui_->chkXoff, *ui_->txtXoff);
    site.baud = ToStd(ui_->cboVelocita->currentText());
    site.dataBits = ToStd(ui_->cboBitDati->currentText());
    site.parity = TakeRow(*ui_->cboParita);
    site.stopBits = ToStd(ui_->cboBitStop->currentText());

    site.enabled = ui_->chkAbilitato->isChecked();
    if (const std::optional<int> kind = TakeRow(*ui_->cboRicorrenza))
        site.schedule = static_cast<ScheduleKind>(*kind);
    site.weekdays = TakeWeekdays(*ui_->lstGiorni);
    site.interval = ToStd(ui_->mskValore->text());
    site.startTime = ToStd(ui_->mskOrario->text());
    site.marked = marked_;
    transformations_->FillRecord(site);

    site.dataFile = ToStd(ui_->txtDati->text());
    site.exchangeFile = ToStd(ui_->txtDati2->text());
    site.historyFile = ToStd(ui_->txtStorico->text());
    site.logFile = ToStd(ui_->txtLog->text());
    modem_->FillRecord(site);
    alerts_->FillRecord(site);
    return site;
}

SiteRow frmDettaglio::Row() const
{
    return {.name = ListedName(ToStd(ui_->txtNomeSito->text())),
            .code = AsStored(ToStd(ui_->txtCodice->text())),
            .enabled = ui_->chkAbilitato->isChecked() ? 1.0 : 0.0,
            .schedule = ToStd(ui_->cboRicorrenza->currentText())};
}

} // namespace corvrec
