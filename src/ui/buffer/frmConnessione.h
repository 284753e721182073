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

// Shows the progress of the modem dialogue. One use is: SetErrModem(false), SetAzione, exec, ErrModem. Once
// it is on the screen the dialog runs the action, and then hides itself.
class frmConnessione : public QDialog
{
    Q_OBJECT

public:
    // Values of Azione; any other value does nothing.
    static constexpr int kDisconnect = 0;
    static constexpr int kConnect = 1;

    // wait must outlive the dialog. Its cancel flag is the one that the Annulla button raises.
    frmConnessione(ReplyWait& wait, ModemSettings modem, QWidget* parent = nullptr);
    ~frmConnessione() override;

    int Azione() const { return azione_; }
    void SetAzione(int azione) { azione_ = azione; }

    // Whether the user has asked to end the running wait: the cancel flag of `wait`.
    bool Cancel() const;
    void SetCancel(bool cancel);

    // Whether the last action failed or was cancelled.
    bool ErrModem() const { return errModem_; }
    void SetErrModem(bool errModem) { errModem_ = errModem; }

    // Dial or hang up, with a message when the modem does not answer. The result is in ErrModem.
    void InitModem();
    void CloseModem();

    // Escape and the close box cancel. The dialog stays open until the running wait has ended.
    void reject() override { cmdAnnulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Run();
    void cmdAnnulla_Click();
    void ShowNotice(TextId message, TextId title);

    ReplyWait& wait_;
    ModemSettings modem_;
    std::unique_ptr<Ui::frmConnessione> ui_;
    int azione_ = kDisconnect;
    bool errModem_ = false;
};

} // namespace corvrec
