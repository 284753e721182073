#include "ui/buffer/frmConnessione.h"

#include "core/device/event_pump.h"
#include "core/device/modComExtension.h"
#include "core/device/serial_port.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/texts.h"
#include "ui_frmConnessione.h"

#include <QShowEvent>

#include <utility>

namespace corvrec
{

frmConnessione::frmConnessione(ReplyWait& wait, ModemSettings modem, QWidget* parent)
    : QDialog(parent)
    , wait_(wait)
    , modem_(std::move(modem))
    , ui_(std::make_unique<Ui::frmConnessione>())
{
    ui_->setupUi(this);
    connect(ui_->cmdAnnulla, &QPushButton::clicked, this, &frmConnessione::cmdAnnulla_Click);
    LocaliseDialog(*this);
    SetCancel(false);

    // Measured with the longer of the two state texts, so that neither is clipped.
    ui_->lblStato->setText(Text(text::disconnecting));
    CentreDialog(*this);
    ui_->lblStato->clear();
}

frmConnessione::~frmConnessione() = default;

bool frmConnessione::Cancel() const
{
    return wait_.Cancel().raised;
}

void frmConnessione::SetCancel(bool cancel)
{
    wait_.Cancel().raised = cancel;
}

void frmConnessione::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (event->spontaneous())
        return;
    ui_->cmdAnnulla->setFocus();
    // Run only once the dialog is on the screen.
    QMetaObject::invokeMethod(this, &frmConnessione::Run, Qt::QueuedConnection);
}

void frmConnessione::Run()
{
    ui_->barAttivita->Start();
    if (azione_ == kConnect)
        InitModem();
    else if (azione_ == kDisconnect)
        CloseModem();
    ui_->barAttivita->Stop();
    // A port that disappears during a wait leaves the flag raised, which would end the next request too.
    if (errModem_)
        SetCancel(false);
    if (azione_ == kConnect || azione_ == kDisconnect)
        hide();
}

void frmConnessione::InitModem()
{
    ui_->lblStato->setText(Text(text::connecting));
    Connection result = Connection::noReply;
    try {
        result = corvrec::InitModem(wait_, modem_);
    } catch (const PortError&) {
        // A port that has disappeared is like a modem that does not answer.
    }
    errModem_ = result != Connection::connected;
    if (result == Connection::noReply)
        ShowNotice(text::connectionNoReply, text::connection);
}

void frmConnessione::CloseModem()
{
    ui_->lblStato->setText(Text(text::disconnecting));
    bool hungUp = false;
    try {
        hungUp = corvrec::CloseModem(wait_);
    } catch (const PortError&) {
        // As in InitModem.
    }
    errModem_ = !hungUp;
    if (!hungUp)
        ShowNotice(text::disconnectionNoReply, text::disconnection);
}

void frmConnessione::cmdAnnulla_Click()
{
    SetCancel(true);
}

// Discards input that arrived while the message box was open: it answers nothing.
void frmConnessione::ShowNotice(TextId message, TextId title)
{
    ui_->barAttivita->Stop();
    ShowMessage(this, Text(message), MessageIcon::exclamation, Text(title));
    wait_.Port().ClearInput();
}

} // namespace corvrec
