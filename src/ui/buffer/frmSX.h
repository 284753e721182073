#pragma once

#include "core/device/buffer_status.h"
#include "core/device/event_pump.h"
#include "core/device/line_settings.h"
#include "core/device/modComExtension.h"
#include "core/device/modem_session.h"
#include "ui/buffer/frmConnessione.h"

#include <QDialog>

#include <array>
#include <memory>
#include <string>

class QLabel;

namespace Ui
{
class frmSX;
}

namespace corvrec
{

class Clock;
class SerialPort;

// Shows a site's buffer device: its status, and a clock to set. For one use. The window owns its serial port.
// The first command opens the port; it stays open, with any modem connection, until the window is closed.
class frmSX : public QDialog
{
    Q_OBJECT

public:
    // clock and events must outlive the window. line: the port is configured here, but not opened.
    frmSX(std::unique_ptr<SerialPort> port, Clock& clock, EventPump& events, const LineSettings& line,
          const ModemSettings& modem, QWidget* parent = nullptr);
    ~frmSX() override;

    // Whether the site is reached by modem.
    bool Modem() const { return modem_; }
    void SetModem(bool modem) { modem_ = modem; }

    // The model of the device, by which its status is requested and decoded.
    BufferModel ModelloSX() const { return modelloSX_; }
    void SetModelloSX(BufferModel modelloSX) { modelloSX_ = modelloSX; }

    // Whether the button that sets the device's clock can be used.
    void EnableClock(bool enabled);

    // Escape and the close box act like the Chiudi button.
    void reject() override { cmdChiudi_Click(); }

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cmdStato_Click();
    void cmdImpostaDataOra_Click();
    void cmdChiudi_Click();

    // How PrepareLink ended. notConnected needs no message: the modem dialog has shown one, or the user has
    // cancelled.
    enum class Link { ready, notOpened, notConnected };

    void MakeValueLabels();
    void ShowNow();
    void EnableButtons(bool enabled);
    Link PrepareLink();
    Link Connect();
    std::string RequestStatus();
    void ShowStatus(const std::string& reply);
    bool SetDeviceClock();
    void HangUpAndHide();

    Clock& clock_;
    std::unique_ptr<Ui::frmSX> ui_;
    std::unique_ptr<SerialPort> comHardB_;
    CancelFlag cancel_;
    ReplyWait wait_;
    frmConnessione connection_;
    std::array<QLabel*, kStatusFields> values_{}; // indexed by StatusField
    int commPort_;
    bool modem_ = false;
    BufferModel modelloSX_ = BufferModel::stratobox11;
    bool isBusy_ = false;     // a request is running, and may be waiting
    bool wantsClose_ = false; // closing was requested during it
};

} // namespace corvrec
