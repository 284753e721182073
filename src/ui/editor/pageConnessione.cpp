#include "ui/editor/pageConnessione.h"

#include "core/device/line_settings.h"
#include "core/device/serial_port.h"
#include "core/file/section.h"
#include "ui/buffer/frmSX.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/site_list_view.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/texts.h"
#include "ui_pageConnessione.h"

#include <QFocusEvent>

#include <map>

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

FlowCharacter TakeFlowCharacter(const QCheckBox& box, const QLineEdit& field)
{
    return {.control = box.isChecked(), .text = ToStd(field.text())};
}

std::optional<int> TakeRow(const QComboBox& list)
{
    return list.currentIndex() < 0 ? std::nullopt : std::optional(list.currentIndex());
}

} // namespace

pageConnessione::pageConnessione(QWidget* parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui::pageConnessione>())
{
    ui_->setupUi(this);
    connect(ui_->cboTipoConn, &QComboBox::currentIndexChanged, this, &pageConnessione::cboTipoConn_Click);
    connect(ui_->cboHandS, &QComboBox::currentIndexChanged, this, &pageConnessione::cboHandS_Click);
    // An option button's rule runs when it is switched on. The other one is switched off and runs none.
    connect(ui_->optLocale, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            optLocale_Click();
    });
    connect(ui_->optRemoto, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            optRemoto_Click();
    });
    connect(ui_->btnModem, &QPushButton::clicked, this, &pageConnessione::btnModem_Click);
    connect(ui_->cmdSX, &QPushButton::clicked, this, &pageConnessione::cmdSX_Click);
    ui_->txtXon->installEventFilter(this);
    ui_->txtXoff->installEventFilter(this);

    // Names for screen readers: these have no caption, or share it with another control.
    ui_->chkXon->setAccessibleName(Text(text::xonIsControl));
    ui_->chkXoff->setAccessibleName(Text(text::xoffIsControl));
    ui_->txtXon->setAccessibleName(Text(text::xonCharacter));
    ui_->txtXoff->setAccessibleName(Text(text::xoffCharacter));

    FillList(*ui_->cboTipoConn, ShownTexts(kDevices));
    ComboVelocita(false);
    FillList(*ui_->cboBitDati, {"7", "8"});
    FillList(*ui_->cboParita, ShownTexts(kParities));
    FillList(*ui_->cboBitStop, {"1", "2"});
    FillList(*ui_->cboHandS, ShownTexts(kHandshakes));
}

pageConnessione::~pageConnessione() = default;

void pageConnessione::Load(const Environment& environment, const SiteListView& list, frmModem& modem)
{
    environment_ = &environment;
    list_ = &list;
    modem_ = &modem;
}

void pageConnessione::ShowRecord(const SiteRecord& site)
{
    // The device first: its rule decides which speeds there are.
    if (site.device)
        SelectRow(*ui_->cboTipoConn, *site.device, *this, &pageConnessione::cboTipoConn_Click);
    if (site.remote)
        (*site.remote ? ui_->optRemoto : ui_->optLocale)->setChecked(true);
    if (site.handshake)
        SelectRow(*ui_->cboHandS, *site.handshake, *this, &pageConnessione::cboHandS_Click);
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

// Fills every field, since a save writes every key. A field that holds a row stays empty when its list has no
// selection.
void pageConnessione::FillRecord(SiteRecord& site) const
{
    site.device = TakeRow(*ui_->cboTipoConn);
    site.remote = !ui_->optLocale->isChecked();
    site.handshake = TakeRow(*ui_->cboHandS);
    site.xon = TakeFlowCharacter(*ui_->chkXon, *ui_->txtXon);
    site.xoff = TakeFlowCharacter(*ui_->chkXoff, *ui_->txtXoff);
    site.baud = ToStd(ui_->cboVelocita->currentText());
    site.dataBits = ToStd(ui_->cboBitDati->currentText());
    site.parity = TakeRow(*ui_->cboParita);
    site.stopBits = ToStd(ui_->cboBitStop->currentText());
}

void pageConnessione::ComboVelocita(bool highSpeeds)
{
    const QString chosen = ui_->cboVelocita->currentText();
    QStringList speeds{"19200", "9600", "4800", "2400", "1200", "600", "300"};
    if (highSpeeds)
        speeds = QStringList{"115200", "57600", "38400"} + speeds;
    FillList(*ui_->cboVelocita, speeds);
    SetRow(*ui_->cboVelocita, static_cast<int>(speeds.indexOf(chosen)));
}

void pageConnessione::FillFlowCharacters()
{
    Field_LostFocus(ui_->txtXon);
    Field_LostFocus(ui_->txtXoff);
}

QWidget& pageConnessione::FieldOf(std::string_view key)
{
    const std::map<std::string_view, QWidget*> fields{{"Dispositivo", ui_->cboTipoConn},
                                                      {"Handshake", ui_->cboHandS},
                                                      {"Xon", ui_->txtXon},
                                                      {"Xoff", ui_->txtXoff},
                                                      {"Parita", ui_->cboParita}};
    return *fields.at(key);
}

bool pageConnessione::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut && IsWithinWindow(*static_cast<QFocusEvent*>(event)))
        Field_LostFocus(watched);
    return QWidget::eventFilter(watched, event);
}

// What the device allows: handshake, local or remote connection, modem, high speeds, the status window.
void pageConnessione::cboTipoConn_Click()
{
    const int row = ui_->cboTipoConn->currentIndex();
    if (row < 0)
        return;
    const DeviceRow& device = DeviceOf(row);
    switch (device.kind) {
    case DeviceKind::exchange:
        // Local first: its rule, which runs if the site was remote, disables the handshake group.
        ui_->optLocale->setChecked(true);
        EnableHandshake(true);
        cboHandS_Click();
        ui_->cmdSX->setEnabled(false);
        EnableConnectionKind(false);
        ui_->btnModem->setEnabled(false);
        ComboVelocita(false);
        break;
    // The speed list stays as the previous device left it.
    case DeviceKind::localStratobox:
        optLocale_Click();
        ui_->cmdSX->setEnabled(true);
        EnableConnectionKind(false);
        break;
    case DeviceKind::stratobox:
        ui_->cmdSX->setEnabled(true);
        EnableConnectionKind(true);
        if (ui_->optRemoto->isChecked())
            optRemoto_Click();
        else
            optLocale_Click();
        ComboVelocita(device.highSpeeds);
        break;
    }
}

// Local or remote: the handshake of a buffer device can never be edited.
void pageConnessione::optLocale_Click()
{
    EnableHandshake(false);
    EnableFlowCharacters(false);
    ui_->btnModem->setEnabled(false);
}

void pageConnessione::optRemoto_Click()
{
    EnableHandshake(false);
    EnableFlowCharacters(false);
    ui_->btnModem->setEnabled(true);
}

void pageConnessione::cboHandS_Click()
{
    EnableFlowCharacters(ui_->cboHandS->currentIndex() == handshake::software);
}

void pageConnessione::EnableHandshake(bool enabled)
{
    for (QWidget* const part :
         std::initializer_list<QWidget*>{ui_->fraHandS, ui_->txtTipoHands, ui_->cboHandS})
        part->setEnabled(enabled);
}

void pageConnessione::EnableFlowCharacters(bool enabled)
{
    for (QWidget* const part : std::initializer_list<QWidget*>{ui_->lblXon, ui_->lblXoff, ui_->chkXon,
                                                               ui_->chkXoff, ui_->txtXon, ui_->txtXoff})
        part->setEnabled(enabled);
}

void pageConnessione::EnableConnectionKind(bool enabled)
{
    for (QWidget* const part :
         std::initializer_list<QWidget*>{ui_->fraColleg, ui_->optLocale, ui_->optRemoto})
        part->setEnabled(enabled);
}

void pageConnessione::Field_LostFocus(QObject* field)
{
    if (field == ui_->txtXon && ui_->txtXon->text().isEmpty())
        ui_->txtXon->setText("Q");
    else if (field == ui_->txtXoff && ui_->txtXoff->text().isEmpty())
        ui_->txtXoff->setText("S");
}

void pageConnessione::btnModem_Click()
{
    modem_->Open(*ui_->btnModem);
}

// The window works with what the controls show, whether saved or not. It is created for each use, and so
// closes its port at the end.
void pageConnessione::cmdSX_Click()
{
    ui_->cmdSX->setFocus();
    const std::string settings =
        LineSettingsText(ToStd(ui_->cboVelocita->currentText()), ui_->cboParita->currentIndex(),
                         ToStd(ui_->cboBitDati->currentText()), ToStd(ui_->cboBitStop->currentText()));
    const LineSettings line{.commPort = list_->ComPort(),
                            .settings = settings,
                            .handshaking =
                                Handshaking(ui_->optLocale->isChecked(), ui_->cboHandS->currentIndex())};
    const DeviceRow& device = DeviceOf(ui_->cboTipoConn->currentIndex());

    frmSX status(environment_->makePort(), environment_->clock, environment_->events, line,
                 modem_->Settings(), window());
    status.SetModem(ui_->optRemoto->isChecked());
    status.SetModelloSX(device.model);
    status.EnableClock(device.settableClock);
    status.exec();
}

} // namespace corvrec
