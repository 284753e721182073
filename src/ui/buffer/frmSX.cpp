#include "ui/buffer/frmSX.h"

#include "core/clock.h"
#include "core/device/buffer_device.h"
#include "core/device/buffer_status.h"
#include "core/device/serial_port.h"
#include "core/site/conversions.h"
#include "ui/widgets/alive_bar.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"
#include "ui_frmSX.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QShowEvent>

#include <algorithm>
#include <utility>

namespace corvrec
{

namespace
{

constexpr int kDateLength = 8; // "dd/mm/yy"

// The longest text of a value label.
constexpr auto kWidestValue = "00/00/0000 00:00:00";

// A value with its caption, and the numbers of their texts. The controls are named lbl and cap.
struct ValueLabel {
    StatusField field;
    QLatin1String name;
    const char* caption;
    const char* toolTip;
};

// Down the left column of the window, then down the right one.
constexpr std::array<ValueLabel, kStatusFields> kValueLabels{{
    {StatusField::memory, QLatin1String("Memoria"), "902;", "20146;"},
    {StatusField::usedMemory, QLatin1String("Condizione"), "903;", "20147;"},
    {StatusField::percentUsed, QLatin1String("Riempimento"), "904;", "20148;"},
    {StatusField::repetitions, QLatin1String("Ripetizioni"), "905;", "20149;"},
    {StatusField::sinceDownload, QLatin1String("Ultimoscarico"), "906;", "20150;"},
    {StatusField::sinceData, QLatin1String("UltimiDati"), "907;", "20151;"},
    {StatusField::faults, QLatin1String("Guasto"), "908;", "20152;"},
    {StatusField::version, QLatin1String("Modello"), "909;", "20153;"},
    {StatusField::firmware, QLatin1String("Firmware"), "910;", "20154;"},
    {StatusField::date, QLatin1String("Data"), "911;", "20155;"},
    {StatusField::time, QLatin1String("Ora"), "912;", "20156;"},
    {StatusField::selector, QLatin1String("Selezione"), "913;", "20157;"},
    {StatusField::printer, QLatin1String("Stampante"), "914;", "20158;"},
    {StatusField::modem, QLatin1String("Modem"), "20007;", "20159;"},
}};
// StatusOf and the labels are indexed by the field.
static_assert(std::ranges::all_of(kValueLabels, [](const ValueLabel& label) {
    return &label == &kValueLabels.at(static_cast<std::size_t>(label.field));
}));

std::string TextInUtf8(TextId id)
{
    return ToStd(Text(id));
}

// Puts two digits into a masked field, from position start on.
void Fill(MaskEdit& field, int start, int number)
{
    field.setSelection(start, 2);
    field.setSelText(ToQt(TwoDigits(number)));
}

// Raises the flag for its own lifetime.
class BusyFlag
{
public:
    explicit BusyFlag(bool& flag)
        : flag_(flag)
    {
        flag_ = true;
    }
    ~BusyFlag() { flag_ = false; }
    BusyFlag(const BusyFlag&) = delete;
    BusyFlag& operator=(const BusyFlag&) = delete;

private:
    bool& flag_;
};

} // namespace

frmSX::frmSX(std::unique_ptr<SerialPort> port, Clock& clock, EventPump& events, const LineSettings& line,
             const ModemSettings& modem, QWidget* parent)
    : QDialog(parent)
    , clock_(clock)
    , ui_(std::make_unique<Ui::frmSX>())
    , comHardB_(std::move(port))
    , wait_(*comHardB_, clock, events, cancel_)
    , connection_(wait_, modem, this)
    , commPort_(line.commPort)
{
    ui_->setupUi(this);
    MakeValueLabels();
    comHardB_->Configure(line);
    connect(ui_->cmdStato, &QPushButton::clicked, this, &frmSX::cmdStato_Click);
    connect(ui_->cmdImpostaDataOra, &QPushButton::clicked, this, &frmSX::cmdImpostaDataOra_Click);
    connect(ui_->cmdChiudi, &QPushButton::clicked, this, &frmSX::cmdChiudi_Click);
    ui_->mskData->installEventFilter(this);
    // Logging off must not wait for a silent device.
    connect(qApp, &QGuiApplication::commitDataRequest, this, &frmSX::cmdChiudi_Click);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    ShowNow();

    // Measured with values in place, so that a reply does not resize the window.
    for (QLabel* const value : values_)
        value->setText(kWidestValue);
    CentreDialog(*this);
    for (QLabel* const value : values_)
        value->clear();
}

frmSX::~frmSX() = default;

void frmSX::EnableClock(bool enabled)
{
    ui_->cmdImpostaDataOra->setEnabled(enabled);
}

void frmSX::MakeValueLabels()
{
    constexpr int kRows = kStatusFields / 2;
    for (int i = 0; const ValueLabel& label : kValueLabels) {
        auto* const caption = new QLabel(ui_->fraStato);
        caption->setObjectName("cap" + label.name);
        caption->setProperty("tag", label.caption);

        // The values come from a device: plain text, never mark-up, and to be copied with the mouse.
        auto* const value = new QLabel(ui_->fraStato);
        value->setObjectName("lbl" + label.name);
        value->setTextFormat(Qt::PlainText);
        value->setFrameShape(QFrame::StyledPanel);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setProperty(kToolTip, label.toolTip);
        caption->setBuddy(value);

        ui_->layStato->addWidget(caption, i % kRows, i / kRows * 2);
        ui_->layStato->addWidget(value, i % kRows, i / kRows * 2 + 1);
        values_.at(static_cast<std::size_t>(label.field)) = value;
        ++i;
    }
}

void frmSX::ShowNow()
{
    const DateTime now = clock_.Now();
    Fill(*ui_->mskData, 0, now.day);
    Fill(*ui_->mskData, 3, now.month);
    Fill(*ui_->mskData, 6, now.year % 100);
    Fill(*ui_->mskOra, 0, now.hour);
    Fill(*ui_->mskOra, 3, now.minute);
}

void frmSX::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        FocusField(*ui_->cmdStato);
}

// Enter does nothing in a field: QDialog would press a button, and so could set the device's clock when only
// one of date and time has been corrected. A focused button handles Enter itself.
void frmSX::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QDialog::keyPressEvent(event);
}

bool frmSX::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui_->mskData && event->type() == QEvent::FocusIn &&
        IsWithinWindow(*static_cast<QFocusEvent*>(event)))
        ui_->mskData->setSelection(0, kDateLength);
    return QDialog::eventFilter(watched, event);
}

void frmSX::cmdStato_Click()
{
    if (isBusy_)
        return;
    {
        const BusyFlag busy(isBusy_);
        EnableButtons(false);
        BusyPointer pointer({this, &connection_});
        Link link = PrepareLink();
        if (link == Link::notOpened && modem_)
            link = Connect(); // the port is closed: fails at once, like a modem that does not answer
        // With a port that could not be opened the request gets no reply, which is reported below.
        if (link != Link::notConnected) {
            const std::string reply = RequestStatus();
            if (wantsClose_) {
                // the window is closing: nobody would see a message or the values
            } else if (reply.empty()) {
                pointer.Restore();
                ShowMessage(this, Text(text::statusNotReceived), MessageIcon::exclamation, Text(text::error));
            } else {
                ShowStatus(reply);
            }
        }
        comHardB_->ClearInput();
        comHardB_->ClearOutput();
        pointer.Restore();
        EnableButtons(true);
        FocusField(*ui_->cmdStato);
    }
    if (wantsClose_)
        HangUpAndHide();
}

void frmSX::cmdImpostaDataOra_Click()
{
    if (isBusy_)
        return;
    if (!IsDate(ToStd(ui_->mskData->text()))) {
        ShowMessage(this, Text(text::dateInvalid));
        FocusField(*ui_->mskData);
        return;
    }
    if (!IsTime(ToStd(ui_->mskOra->text()))) {
        ShowMessage(this, Text(text::timeInvalid));
        FocusField(*ui_->mskOra);
        return;
    }
    {
        const BusyFlag busy(isBusy_);
        BusyPointer pointer({this, &connection_});
        const Link link = PrepareLink();
        const bool isRefused = link == Link::notOpened || (link == Link::ready && !SetDeviceClock());
        pointer.Restore();
        if (isRefused && !wantsClose_)
            ShowMessage(this, Text(text::portNotOpened) + QString::number(commPort_),
                        MessageIcon::exclamation, Text(text::error));
    }
    if (wantsClose_)
        HangUpAndHide();
}

void frmSX::cmdChiudi_Click()
{
    if (isBusy_) {
        // Nothing may be destroyed during a wait: the wait ends first, then the window closes.
        cancel_.raised = true;
        wantsClose_ = true;
        return;
    }
    HangUpAndHide();
}

void frmSX::EnableButtons(bool enabled)
{
    for (QPushButton* const button : {ui_->cmdStato, ui_->cmdImpostaDataOra, ui_->cmdChiudi})
        button->setEnabled(enabled);
}

// Opens the port and, for a remote site, dials. An existing connection is used again; after a lost carrier
// the site is dialled again.
frmSX::Link frmSX::PrepareLink()
{
    if (comHardB_->IsOpen() && (!modem_ || comHardB_->CDHolding()))
        return Link::ready;
    comHardB_->Close();
    try {
        comHardB_->Open();
    } catch (const PortError&) {
        return Link::notOpened;
    }
    return modem_ ? Connect() : Link::ready;
}

frmSX::Link frmSX::Connect()
{
    connection_.SetErrModem(false);
    connection_.SetAzione(frmConnessione::kConnect);
    connection_.exec();
    if (!connection_.ErrModem())
        return Link::ready;
    comHardB_->Close();
    return Link::notConnected;
}

// The raw reply; empty when there is none, or when the port cannot be used.
std::string frmSX::RequestStatus()
{
    const AliveWhile alive(*ui_->barAttivita);
    try {
        SXAzzeraLinea(wait_, kLineClearTimeOutMs);
        if (wantsClose_)
            return {};
        return RiceviSXStatus(wait_, modelloSX_, modem_ ? kStatusByModemTimeOutMs : kStatusTimeOutMs);
    } catch (const PortError&) {
        return {};
    }
}

void frmSX::ShowStatus(const std::string& reply)
{
    const BufferStatus status = StatusOf(modelloSX_, reply, {.now = clock_.Now(), .text = TextInUtf8});
    for (std::size_t field = 0; field < kStatusFields; ++field) {
        // A line break would make the label, and so the window, higher for good.
        values_.at(field)->setText(ToQt(status.at(field)).replace('\r', ' ').replace('\n', ' '));
    }
}

// False when the port has disappeared.
bool frmSX::SetDeviceClock()
{
    try {
        ImpostaDataOra(*comHardB_, clock_, ToStd(ui_->mskOra->text()), ToStd(ui_->mskData->text()));
    } catch (const PortError&) {
        return false;
    }
    comHardB_->ClearInput();
    comHardB_->ClearOutput();
    return true;
}

// For a modem connection the dialog runs the hang-up; whether the modem answers does not matter.
void frmSX::HangUpAndHide()
{
    cancel_.raised = false;
    if (comHardB_->IsOpen() && modem_) {
        const BusyFlag busy(isBusy_);
        connection_.SetAzione(frmConnessione::kDisconnect);
        connection_.exec();
    }
    comHardB_->Close();
    hide();
}

} // namespace corvrec
