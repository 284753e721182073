#include "ui/editor/frmDettaglio.h"

#include "core/clock.h"
#include "core/device/buffer_device.h"
#include "core/device/event_pump.h"
#include "core/device/line_settings.h"
#include "core/device/serial_port.h"
#include "core/file/profile_file.h"
#include "core/file/section.h"
#include "core/site/conversions.h"
#include "core/site/new_site.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
#include "ui/buffer/frmSX.h"
#include "ui/editor/file_chooser.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/editor/site_list_view.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/texts.h"
#include "ui_frmDettaglio.h"

#include <QFocusEvent>
#include <QHideEvent>
#include <QShortcut>
#include <QShowEvent>
#include <QTabBar>

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace corvrec
{

namespace
{

// Pages of the tab control. The checks for a missing file name ask for a page after the last one, which does
// nothing; the field's page comes to the front with the focus.
namespace tab
{
constexpr int connection = 0;
constexpr int schedule = 1;
constexpr int files = 2;
constexpr int afterLast = 3;
} // namespace tab

// How the schedule's controls look for a kind. A kind without a unit has no parameters. mask and format
// belong to the interval field; interval is the text that it gets when the kind is chosen.
struct KindRule {
    TextId help;
    std::optional<TextId> unit;
    const char* mask;
    const char* format;
    const char* interval;
    bool weekdays;
};

// In the order of ScheduleKind.
constexpr std::array<KindRule, 4> kKindRules{{
    {text::continuousHelp, std::nullopt, "", "", "1", false},
    {text::hourlyHelp, text::hoursFrom, "##:##", "hh:mm", "__:__", false},
    {text::dailyHelp, text::daysAt, "", "", "1", false},
    {text::weeklyHelp, text::weeksAt, "", "", "1", true},
}};

// In the order of the list, as kWeekdayRows.
constexpr std::array kWeekdayNames{text::monday, text::tuesday,  text::wednesday, text::thursday,
                                   text::friday, text::saturday, text::sunday};

constexpr int kStartTimeLength = 5; // "hh:mm"

QString OwnDirectory(const Environment& environment)
{
    return QString::fromStdU16String(environment.directory.u16string());
}

// Sets the text only if it differs, so that caret and selection of an unchanged text stay.
void Replace(QLineEdit& field, const QString& text)
{
    if (field.text() != text)
        field.setText(text);
}

// Sections of the settings file that are not sites.
constexpr std::array kOwnSections{"General", "Siti"};

} // namespace

frmDettaglio::frmDettaglio(Environment environment, const SiteListView& list, QWidget* parent)
    : QDialog(parent)
    , environment_(std::move(environment))
    , list_(list)
    , ui_(std::make_unique<Ui::frmDettaglio>())
{
    ui_->setupUi(this);
    ConnectControls();
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    TabToChosenOption(*this);
    NameControls();
    transformations_ = std::make_unique<frmTrasfAvanzate>(this);
    alerts_ = std::make_unique<frmFileAvanzate>(this);
    modem_ = std::make_unique<frmModem>(environment_.directory, this);
    FillLists();
    ReserveSentence();

    // Measured with the weekly kind, which shows the most controls, so that nothing moves when it is chosen.
    SelectRow(*ui_->cboRicorrenza, static_cast<int>(ScheduleKind::weekly), *this,
              &frmDettaglio::cboRicorrenza_Click);
    CentreDialog(*this);
    ShowFirstState();
    InitFormDettagli();
}

frmDettaglio::~frmDettaglio() = default;

void frmDettaglio::ConnectControls()
{
    connect(ui_->cboTipoConn, &QComboBox::currentIndexChanged, this, &frmDettaglio::cboTipoConn_Click);
    connect(ui_->cboHandS, &QComboBox::currentIndexChanged, this, &frmDettaglio::cboHandS_Click);
    connect(ui_->cboRicorrenza, &QComboBox::currentIndexChanged, this, &frmDettaglio::cboRicorrenza_Click);
    // An option button's rule runs when it is switched on; nothing runs for the other one, which goes off.
    connect(ui_->optLocale, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            optLocale_Click();
    });
    connect(ui_->optRemoto, &QRadioButton::toggled, this, [this](bool on) {
        if (on)
            optRemoto_Click();
    });
    connect(ui_->btnModem, &QPushButton::clicked, this, &frmDettaglio::btnModem_Click);
    connect(ui_->cmdTAvanzate, &QPushButton::clicked, this, &frmDettaglio::cmdTAvanzate_Click);
    connect(ui_->cmdSX, &QPushButton::clicked, this, &frmDettaglio::cmdSX_Click);
    connect(ui_->cmdFileAvanzate, &QPushButton::clicked, this, &frmDettaglio::cmdFileAvanzate_Click);
    connect(ui_->cmdSfoglia1, &QPushButton::clicked, this, [this] { Browse(*ui_->txtDati); });
    connect(ui_->cmdSfoglia2, &QPushButton::clicked, this, [this] { Browse(*ui_->txtDati2); });
    connect(ui_->cmdSfoglia3, &QPushButton::clicked, this, [this] { Browse(*ui_->txtStorico); });
    connect(ui_->OK, &QPushButton::clicked, this, &frmDettaglio::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmDettaglio::Annulla_Click);

    for (QWidget* const field : std::initializer_list<QWidget*>{ui_->txtNomeSito, ui_->txtCodice, ui_->txtXon,
                                                                ui_->txtXoff, ui_->mskOrario, ui_->mskValore})
        field->installEventFilter(this);

    const auto onKeys = [this](const QKeyCombination keys, int step) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
                [this, step] { NextTab(step); });
    };
    onKeys(Qt::CTRL | Qt::Key_Tab, +1);
    onKeys(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
    GuardWheel(*this);
    // A click on a tab takes the focus, so that the field being left runs its rule.
    ui_->tabSetup->tabBar()->setFocusPolicy(Qt::StrongFocus);
}

// Names for screen readers, where a control has no caption or shares it with another control.
void frmDettaglio::NameControls()
{
    ui_->lstGiorni->setAccessibleName(Text(text::weekdays));
    ui_->mskOrario->setAccessibleName(Text(text::startTime));
    ui_->cmdSfoglia1->setAccessibleName(Text(text::browseDataFile));
    ui_->cmdSfoglia2->setAccessibleName(Text(text::browseExchangeFile));
    ui_->cmdSfoglia3->setAccessibleName(Text(text::browseHistoryFile));
    ui_->chkXon->setAccessibleName(Text(text::xonIsControl));
    ui_->chkXoff->setAccessibleName(Text(text::xoffIsControl));
    ui_->txtXon->setAccessibleName(Text(text::xonCharacter));
    ui_->txtXoff->setAccessibleName(Text(text::xoffCharacter));
}

void frmDettaglio::FillLists()
{
    for (const TextId day : kWeekdayNames)
        ui_->lstGiorni->addItem(Text(day));
    FillList(*ui_->cboTipoConn, ShownTexts(kDevices));
    ComboVelocita(false);
    FillList(*ui_->cboBitDati, {"7", "8"});
    FillList(*ui_->cboParita, ShownTexts(kParities));
    FillList(*ui_->cboBitStop, {"1", "2"});
    FillList(*ui_->cboHandS, ShownTexts(kHandshakes));
    QStringList kinds;
    for (const TextId kind : kScheduleTexts)
        kinds.append(Text(kind));
    FillList(*ui_->cboRicorrenza, kinds);
}

// Keeps the fields of the schedule's sentence in place, whichever of its words are shown.
void frmDettaglio::ReserveSentence()
{
    const QStringList beginnings{ui_->lblNessuno->text(), ui_->lblOgni->text()};
    ui_->lblNessuno->Reserve(beginnings);
    ui_->lblOgni->Reserve(beginnings);
    QStringList units;
    for (const KindRule& rule : kKindRules) {
        if (rule.unit)
            units.append(Text(*rule.unit));
    }
    ui_->txtTempo->Reserve(units);
    ui_->txtTempo->KeepPlace();
}

void frmDettaglio::MostraDati(std::string_view code)
{
    SiteRecord site;
    LoadSite(environment_.settings, code, site); // result ignored on purpose: missing keys are never reported
    ShowRecord(site);
    ui_->txtNomeSito->setText(ToQt(list_.SelectedName()));
    ui_->txtCodice->setText(ToQt(code));
    // Disabled fields cannot be scrolled: show the beginning of a long text.
    ui_->txtNomeSito->setCursorPosition(0);
    ui_->txtCodice->setCursorPosition(0);
}

void frmDettaglio::InitFormDettagli()
{
    SiteRecord site = FirstValues();
    // Deliberate: these, and the option dialogs, keep what the last site put there. Older editors do it.
    site.xon.reset();
    site.xoff.reset();
    site.weekdays.reset();
    ShowPages(site);
    ClearIdentity();
    for (QLineEdit* const field : {ui_->txtDati, ui_->txtDati2, ui_->txtStorico, ui_->txtLog})
        field->selectAll();
}

void frmDettaglio::ShowFirstState()
{
    for (int row = 0; row < ui_->lstGiorni->count(); ++row)
        ui_->lstGiorni->SetMarked(row, false);
    modem_->SelectFirstModel();
    ShowRecord(FirstValues());
}

// A new site whose files are next to the program; the log file deliberately without a directory, as recorders
// expect it.
SiteRecord frmDettaglio::FirstValues() const
{
    SiteRecord site = NewSite(environment_.clock.Now());
    const QString own = OwnDirectory(environment_);
    for (std::optional<std::string>* const file : {&site.dataFile, &site.exchangeFile, &site.historyFile}) {
        QString directory = own;
        *file = ToStd(ProperCasePath(JoinPath(ToQt(**file), directory, own)));
    }
    return site;
}

void frmDettaglio::ClearIdentity()
{
    ui_->txtNomeSito->clear();
    ui_->txtCodice->clear();
}

// Compared in the form in which the file will hold the texts: two that differ only in characters that it
// cannot hold would be the same there.
bool frmDettaglio::SitoUnivoco(const QString& strNomeSito, const QString& strCodSito) const
{
    if (!nuovo_)
        return true;
    const auto held = [](const std::string& text) { return UpperCase(ToQt(AsStored(text))); };
    const auto isTaken = [&](const QString& text, std::string SiteRow::*column) {
        return std::ranges::any_of(list_.Sites(), [&, upper = held(ToStd(text))](const SiteRow& row) {
            return held(row.*column) == upper;
        });
    };
    const bool isOwnSection = std::ranges::any_of(
        kOwnSections, [&](const char* section) { return held(section) == held(ToStd(strCodSito)); });
    return !isTaken(strNomeSito, &SiteRow::name) && !isTaken(strCodSito, &SiteRow::code) && !isOwnSection;
}

void frmDettaglio::ComboVelocita(bool highSpeeds)
{
    const QString chosen = ui_->cboVelocita->currentText();
    QStringList speeds{"19200", "9600", "4800", "2400", "1200", "600", "300"};
    if (highSpeeds)
        speeds = QStringList{"115200", "57600", "38400"} + speeds;
    FillList(*ui_->cboVelocita, speeds);
    SetRow(*ui_->cboVelocita, static_cast<int>(speeds.indexOf(chosen)));
}

void frmDettaglio::EnableIdentity(bool enabled)
{
    ui_->txtCodice->setEnabled(enabled);
    ui_->txtNomeSito->setEnabled(enabled);
}

void frmDettaglio::SelectTab(int tab)
{
    ui_->tabSetup->setCurrentIndex(tab);
}

void frmDettaglio::SetAbilitato(bool enabled)
{
    ui_->chkAbilitato->setChecked(enabled);
}

void frmDettaglio::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (!event->spontaneous())
        FocusFirst(*this);
}

// Puts the default letter into an empty flow-control field, however the dialog was left: for the next site
// the field may be disabled.
void frmDettaglio::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous())
        FillFlowCharacters();
    QDialog::hideEvent(event);
}

bool frmDettaglio::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut && IsWithinWindow(*static_cast<QFocusEvent*>(event)))
        Field_LostFocus(watched);
    if (event->type() == QEvent::FocusIn && IsWithinWindow(*static_cast<QFocusEvent*>(event))) {
        if (watched == ui_->mskOrario)
            mskOrario_GotFocus();
        else if (watched == ui_->mskValore)
            mskValore_GotFocus();
    }
    return QDialog::eventFilter(watched, event);
}

// --- Rules of the connection page

// What the device allows: handshake, local or remote connection, modem, high speeds, the status window.
void frmDettaglio::cboTipoConn_Click()
{
    const int row = ui_->cboTipoConn->currentIndex();
    switch (row) {
    case device::pabx:
    case device::buffer:
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
    case device::stratobox11:
        optLocale_Click();
        ui_->cmdSX->setEnabled(true);
        EnableConnectionKind(false);
        break;
    case device::stratobox20:
    case device::stratobox30:
    case device::stratoboxBuffer:
        ui_->cmdSX->setEnabled(true);
        EnableConnectionKind(true);
        if (ui_->optRemoto->isChecked())
            optRemoto_Click();
        else
            optLocale_Click();
        ComboVelocita(row == device::stratoboxBuffer);
        break;
    default:
        break;
    }
}

// Local or remote: the handshake of a buffer device can never be edited.
void frmDettaglio::optLocale_Click()
{
    EnableHandshake(false);
    EnableFlowCharacters(false);
    ui_->btnModem->setEnabled(false);
}

void frmDettaglio::optRemoto_Click()
{
    EnableHandshake(false);
    EnableFlowCharacters(false);
    ui_->btnModem->setEnabled(true);
}

void frmDettaglio::cboHandS_Click()
{
    EnableFlowCharacters(ui_->cboHandS->currentIndex() == handshake::software);
}

void frmDettaglio::EnableHandshake(bool enabled)
{
    for (QWidget* const part :
         std::initializer_list<QWidget*>{ui_->fraHandS, ui_->txtTipoHands, ui_->cboHandS})
        part->setEnabled(enabled);
}

void frmDettaglio::EnableFlowCharacters(bool enabled)
{
    for (QWidget* const part : std::initializer_list<QWidget*>{ui_->lblXon, ui_->lblXoff, ui_->chkXon,
                                                               ui_->chkXoff, ui_->txtXon, ui_->txtXoff})
        part->setEnabled(enabled);
}

void frmDettaglio::EnableConnectionKind(bool enabled)
{
    for (QWidget* const part :
         std::initializer_list<QWidget*>{ui_->fraColleg, ui_->optLocale, ui_->optRemoto})
        part->setEnabled(enabled);
}

// --- Rules of the schedule page

void frmDettaglio::cboRicorrenza_Click()
{
    if (ui_->cboRicorrenza->currentIndex() < 0)
        return;
    const KindRule& rule = kKindRules.at(static_cast<std::size_t>(ui_->cboRicorrenza->currentIndex()));
    ui_->lblHelpParametri->setText(Text(rule.help));
    ui_->lblNessuno->setVisible(!rule.unit);
    ui_->lblOgni->setVisible(rule.unit.has_value());
    ui_->txtTempo->setVisible(rule.unit.has_value());
    if (rule.unit)
        ui_->txtTempo->setText(Text(*rule.unit));
    ui_->mskValore->setEnabled(rule.unit.has_value());
    ui_->mskOrario->setEnabled(rule.unit.has_value());
    ui_->lstGiorni->setVisible(rule.weekdays);

    // The mask first, so that the text fits it. A change of kind always discards what the user typed.
    ui_->mskValore->setMask(rule.mask);
    ui_->mskValore->setFormat(rule.format);
    ui_->mskValore->setText(rule.interval);
}

void frmDettaglio::mskOrario_GotFocus()
{
    ui_->mskOrario->setSelection(0, kStartTimeLength);
}

void frmDettaglio::mskValore_GotFocus()
{
    // Deliberate: the text of the start time is selected, not the interval's own. Older editors do it.
    const bool isHourly = ui_->cboRicorrenza->currentIndex() == static_cast<int>(ScheduleKind::hourly);
    const auto length = isHourly ? kStartTimeLength : static_cast<int>(ui_->mskOrario->text().length());
    ui_->mskOrario->setSelection(0, length);
}

void frmDettaglio::Field_LostFocus(QObject* field)
{
    if (field == ui_->txtCodice)
        ui_->txtCodice->setText(UpperCase(TrimBlanks(ui_->txtCodice->text())));
    else if (field == ui_->txtNomeSito)
        ui_->txtNomeSito->setText(TrimBlanks(ui_->txtNomeSito->text()));
    else if (field == ui_->txtXon && ui_->txtXon->text().isEmpty())
        ui_->txtXon->setText("Q");
    else if (field == ui_->txtXoff && ui_->txtXoff->text().isEmpty())
        ui_->txtXoff->setText("S");
}

// Runs the rules for leaving Xon and Xoff, wherever the focus is.
void frmDettaglio::FillFlowCharacters()
{
    Field_LostFocus(ui_->txtXon);
    Field_LostFocus(ui_->txtXoff);
}

// Ctrl+Tab and Ctrl+Shift+Tab, from either end to the other.
void frmDettaglio::NextTab(int step)
{
    const int count = ui_->tabSetup->count();
    ui_->tabSetup->setCurrentIndex((ui_->tabSetup->currentIndex() + step + count) % count);
}

// --- Commands

// A mnemonic clicks its button without moving the focus, so the handlers set it: the field being left then
// runs its rule.
void frmDettaglio::btnModem_Click()
{
    ui_->btnModem->setFocus();
    modem_->RegisterUndo();
    modem_->exec();
}

void frmDettaglio::cmdTAvanzate_Click()
{
    ui_->cmdTAvanzate->setFocus();
    transformations_->RegisterUndo();
    transformations_->exec();
}

void frmDettaglio::cmdFileAvanzate_Click()
{
    ui_->cmdFileAvanzate->setFocus();
    alerts_->RegisterUndo();
    alerts_->exec();
}

// The window works with what the controls show, whether saved or not. It is created for each use, and so
// closes its port at the end.
void frmDettaglio::cmdSX_Click()
{
    ui_->cmdSX->setFocus();
    const std::string settings =
        LineSettingsText(ToStd(ui_->cboVelocita->currentText()), ui_->cboParita->currentIndex(),
                         ToStd(ui_->cboBitDati->currentText()), ToStd(ui_->cboBitStop->currentText()));
    const LineSettings line{.commPort = list_.ComPort(),
                            .settings = settings,
                            .handshaking =
                                Handshaking(ui_->optLocale->isChecked(), ui_->cboHandS->currentIndex())};
    const BufferModel model = BufferModelOf(ui_->cboTipoConn->currentIndex());

    frmSX status(environment_.makePort(), environment_.clock, environment_.events, line, modem_->Settings(),
                 this);
    status.SetModem(ui_->optRemoto->isChecked());
    status.SetModelloSX(model.number);
    status.EnableClock(model.settableClock);
    status.exec();
}

void frmDettaglio::Browse(QLineEdit& field)
{
    const std::optional<QString> path = ChooseFile(this, field.text(), OwnDirectory(environment_));
    if (!path)
        return;
    field.setText(CapitaliseAfter(*path, '\\'));
    field.setCursorPosition(0);
}

void frmDettaglio::OK_Click()
{
    // Enter has not left the field, and an empty one would stop the save after the old section is deleted.
    FillFlowCharacters();
    if (!FieldsComplete() || !SharingFilesAccepted())
        return;
    cancel_ = false;
    const std::string_view stoppedAt = Save();
    environment_.settings.Flush();
    if (stoppedAt.empty()) {
        hide();
        return;
    }
    ShowMessage(this, Text(text::saveIncomplete), MessageIcon::stop, Text(text::error));
    FocusFieldOf(stoppedAt);
}

void frmDettaglio::Annulla_Click()
{
    cancel_ = true;
    hide();
}

// The checks on OK. The first one that fails shows a message and focuses its field.
bool frmDettaglio::FieldsComplete()
{
    Replace(*ui_->txtNomeSito, TrimBlanks(ui_->txtNomeSito->text()));
    Replace(*ui_->txtCodice, TrimBlanks(ui_->txtCodice->text()));
    if (!SitoUnivoco(ui_->txtNomeSito->text(), ui_->txtCodice->text())) {
        SelectTab(tab::connection);
        ShowMessage(this, Text(text::siteNotUnique), MessageIcon::exclamation, Text(text::setup));
        return false;
    }
    return ScheduleComplete() && TextsComplete();
}

bool frmDettaglio::ScheduleComplete()
{
    if (!IsTime(ToStd(ui_->mskOrario->text()))) {
        // For every kind, even the continuous one; and under the application's title, not "Setup". The page
        // comes to the front with the focus.
        ShowMessage(this, Text(text::startTimeInvalid));
        FocusField(*ui_->mskOrario);
        return false;
    }
    const bool isHourly = ui_->cboRicorrenza->currentIndex() == static_cast<int>(ScheduleKind::hourly);
    if (isHourly && !IsTime(ToStd(ui_->mskValore->text()))) {
        ShowMessage(this, Text(text::intervalInvalid), MessageIcon::exclamation, Text(text::setup));
        FocusField(*ui_->mskValore);
        return false;
    }
    // The list's own visibility counts, whichever page is in front.
    if (!ui_->lstGiorni->isHidden() && !ui_->lstGiorni->AnyMarked()) {
        SelectTab(tab::schedule);
        ShowMessage(this, Text(text::weekdayMissing), MessageIcon::exclamation, Text(text::setup));
        FocusField(*ui_->lstGiorni);
        return false;
    }
    return true;
}

// The file names first, then the site's name and code.
bool frmDettaglio::TextsComplete()
{
    struct Check {
        QLineEdit* field;
        int page;
        TextId message;
    };
    const std::array<Check, 6> checks{{
        {ui_->txtDati, tab::afterLast, text::dataFileMissing},
        {ui_->txtDati2, tab::afterLast, text::exchangeFileMissing},
        {ui_->txtStorico, tab::afterLast, text::historyFileMissing},
        {ui_->txtLog, tab::afterLast, text::logFileMissing},
        {ui_->txtNomeSito, tab::connection, text::siteNameMissing},
        {ui_->txtCodice, tab::connection, text::siteCodeMissing},
    }};
    for (const Check& check : checks) {
        if (check.field->text().isEmpty()) {
            SelectTab(check.page);
            ShowMessage(this, Text(check.message), MessageIcon::exclamation, Text(text::setup));
            FocusField(*check.field);
            return false;
        }
    }
    return true;
}

// True when no other site uses the same files, or when the user wants to save all the same.
bool frmDettaglio::SharingFilesAccepted()
{
    const std::optional<int> row =
        FindCollision(environment_.settings, list_.Sites(), Files(), ToStd(ui_->txtCodice->text()));
    if (!row)
        return true;
    SelectTab(tab::files);
    const SiteRow& other = list_.Sites()[static_cast<std::size_t>(*row)];
    const QString question = Text(text::collisionFileNames) + Text(text::collisionMatch) +
                             Text(text::collisionThoseOfSite) + ToQt(other.name) + ".\r" +
                             Text(text::collisionToAvoidLoss) + Text(text::collisionAdvice) + "\r" +
                             Text(text::collisionSaveAnyway);
    if (AskYesNo(this, question, MessageIcon::information, Text(text::setup)))
        return true;
    FocusField(*ui_->txtDati);
    return false;
}

// The file names as they will be stored, so that they can be compared with those of other sites.
SiteFiles frmDettaglio::Files() const
{
    return {.data = AsStored(ToStd(ui_->txtDati->text())),
            .exchange = AsStored(ToStd(ui_->txtDati2->text())),
            .history = AsStored(ToStd(ui_->txtStorico->text()))};
}

// The key at which the save stopped, for lack of a value; empty when all keys were written.
std::string_view frmDettaglio::Save()
{
    // The whole old section is deleted, so that keys that are no longer written disappear. The results of the
    // writes are ignored on purpose: a failed one is never reported.
    if (!nuovo_)
        Section(environment_.settings, list_.SelectedSite()).Delete();
    return SaveSite(environment_.settings, ToStd(ui_->txtCodice->text()), ToStd(ui_->txtNomeSito->text()),
                    TakeRecord(), environment_.clock.Now())
        .stoppedAt;
}

// Focuses the field whose value a save of this key lacked.
void frmDettaglio::FocusFieldOf(std::string_view key)
{
    const std::array<std::pair<std::string_view, QWidget*>, 5> fields{{
        {"Dispositivo", ui_->cboTipoConn},
        {"Handshake", ui_->cboHandS},
        {"Xon", ui_->txtXon},
        {"Xoff", ui_->txtXoff},
        {"Parita", ui_->cboParita},
    }};
    const auto* const field = std::ranges::find(fields, key, &std::pair<std::string_view, QWidget*>::first);
    assert(field != fields.end());
    FocusField(*field->second);
}

} // namespace corvrec
