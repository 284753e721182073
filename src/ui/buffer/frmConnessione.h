#pragma once

#include "core/device/modem_session.h"
#include "core/text_ids.h"

#include <QDialog>

#include <memory>

namespace Ui
{
class frmConnessione;
}

namespace corvrec
{

class ReplyWait;

// Progress of the modem dialogue. A use is: SetErrModem(false), SetAzione, exec, ErrModem. The dialog runs
// the action once it is on the screen and hides itself when it has ended.
class frmConnessione : public QDialog
{
    Q_OBJECT

public:
    // What to do; any other value does nothing.
    static constexpr int kDisconnect = 0;
    static constexpr int kConnect = 1;

    // wait must outlive the dialog; its cancel flag is the one that the dialog's button raises.
    frmConnessione(ReplyWait& wait, ModemSettings modem, QWidget* parent = nullptr);
    ~frmConnessione() override;

    int Azione() const { return azione_; }
    void SetAzione(int azione) { azione_ = azione; }

    // Whether the user has asked to end the running wait.
    bool Cancel() const;
    void SetCancel(bool cancel);

    // Outcome of the last action: true on failure or cancel.
    bool ErrModem() const { return errModem_; }
    void SetErrModem(bool errModem) { errModem_ = errModem; }

    void InitModem();
    void CloseModem();

    // Escape and the frame cancel; the dialog stays until the running wait has ended.
    void reject() override { cmdAnnulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Run();
    void cmdAnnulla_Click();
    void Tell(TextId message, TextId title);

    ReplyWait& wait_;
    ModemSettings modem_;
    std::unique_ptr<Ui::frmConnessione> ui_;
    int azione_ = kDisconnect;
    bool errModem_ = false;
};

} // namespace corvrec
