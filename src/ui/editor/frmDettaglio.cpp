#include "ui/editor/frmDettaglio.h"

#include "core/file/profile_file.h"
#include "core/file/section.h"
#include "core/site/new_site.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
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
#include <utility>

namespace corvrec
{

namespace
{

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
    GuardWheel(*this);
    transformations_ = std::make_unique<frmTrasfAvanzate>(this);
    alerts_ = std::make_unique<frmFileAvanzate>(this);
    modem_ = std::make_unique<frmModem>(environment_.directory, this);
    ui_->pageConnessione->Load(environment_, list_, *modem_);
    ui_->pageAcquisizione->Load(*transformations_);
    ui_->pageFile->Load(OwnDirectory(environment_), *alerts_);

    // Measured with the weekly kind, which shows the most controls, so that nothing moves when it is chosen.
    SiteRecord weekly;
    weekly.schedule = ScheduleKind::weekly;
    ui_->pageAcquisizione->ShowRecord(weekly);
    CentreDialog(*this);
    ShowFirstState();
    InitFormDettagli();
}

frmDettaglio::~frmDettaglio() = default;

void frmDettaglio::ConnectControls()
{
    connect(ui_->OK, &QPushButton::clicked, this, &frmDettaglio::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmDettaglio::Annulla_Click);
    ui_->txtNomeSito->installEventFilter(this);
    ui_->txtCodice->installEventFilter(this);

    const auto onKeys = [this](const QKeyCombination keys, int step) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this,
                [this, step] { NextTab(step); });
    };
    onKeys(Qt::CTRL | Qt::Key_Tab, +1);
    onKeys(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
    // A click on a tab takes the focus, so that the field being left runs its rule.
    ui_->tabSetup->tabBar()->setFocusPolicy(Qt::StrongFocus);
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
    ui_->pageFile->SelectNames();
}

void frmDettaglio::ShowFirstState()
{
    ui_->pageAcquisizione->UnmarkDays();
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
    ui_->pageConnessione->ComboVelocita(highSpeeds);
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

SiteRow frmDettaglio::Row() const
{
    const SiteRecord site = TakeRecord();
    return {.name = ListedName(ToStd(ui_->txtNomeSito->text())),
            .code = AsStored(ToStd(ui_->txtCodice->text())),
            .enabled = *site.enabled ? 1.0 : 0.0,
            .schedule = site.schedule};
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
        ui_->pageConnessione->FillFlowCharacters();
    QDialog::hideEvent(event);
}

// The rules for leaving name and code.
bool frmDettaglio::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut && IsWithinWindow(*static_cast<QFocusEvent*>(event))) {
        if (watched == ui_->txtCodice)
            ui_->txtCodice->setText(UpperCase(TrimBlanks(ui_->txtCodice->text())));
        else
            ui_->txtNomeSito->setText(TrimBlanks(ui_->txtNomeSito->text()));
    }
    return QDialog::eventFilter(watched, event);
}

// Ctrl+Tab and Ctrl+Shift+Tab, from either end to the other.
void frmDettaglio::NextTab(int step)
{
    const int count = ui_->tabSetup->count();
    ui_->tabSetup->setCurrentIndex((ui_->tabSetup->currentIndex() + step + count) % count);
}

void frmDettaglio::OK_Click()
{
    // Enter has not left the field, and an empty one would stop the save after the old section is deleted.
    ui_->pageConnessione->FillFlowCharacters();
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
    FocusField(ui_->pageConnessione->FieldOf(stoppedAt));
}

void frmDettaglio::Annulla_Click()
{
    cancel_ = true;
    hide();
}

bool frmDettaglio::FieldsComplete()
{
    Replace(*ui_->txtNomeSito, TrimBlanks(ui_->txtNomeSito->text()));
    Replace(*ui_->txtCodice, TrimBlanks(ui_->txtCodice->text()));
    const std::optional<Omission> omission = Missing();
    if (!omission)
        return true;
    if (omission->pageBefore != nullptr)
        ui_->tabSetup->setCurrentWidget(omission->pageBefore);
    ShowMessage(this, Text(omission->message), MessageIcon::exclamation, Text(omission->title));
    if (omission->field != nullptr)
        FocusField(*omission->field);
    return false;
}

// The first of the checks on OK that fails.
std::optional<Omission> frmDettaglio::Missing() const
{
    QWidget* const page = ui_->pageConnessione;
    if (!SitoUnivoco(ui_->txtNomeSito->text(), ui_->txtCodice->text()))
        return Omission{.message = text::siteNotUnique, .pageBefore = page};
    if (const auto omission = ui_->pageAcquisizione->Missing())
        return omission;
    if (const auto omission = ui_->pageFile->Missing())
        return omission;
    if (ui_->txtNomeSito->text().isEmpty())
        return Omission{.message = text::siteNameMissing, .pageBefore = page, .field = ui_->txtNomeSito};
    if (ui_->txtCodice->text().isEmpty())
        return Omission{.message = text::siteCodeMissing, .pageBefore = page, .field = ui_->txtCodice};
    return std::nullopt;
}

// True when no other site uses the same files, or when the user wants to save all the same.
bool frmDettaglio::SharingFilesAccepted()
{
    // As they will be stored, so that they can be compared with those of other sites.
    const SiteRecord site = TakeRecord();
    const SiteFiles files{.data = AsStored(*site.dataFile),
                          .exchange = AsStored(*site.exchangeFile),
                          .history = AsStored(*site.historyFile)};
    const std::optional<int> row =
        FindCollision(environment_.settings, list_.Sites(), files, ToStd(ui_->txtCodice->text()));
    if (!row)
        return true;
    ui_->tabSetup->setCurrentWidget(ui_->pageFile);
    const SiteRow& other = list_.Sites()[static_cast<std::size_t>(*row)];
    const QString question = Text(text::collisionFileNames) + Text(text::collisionMatch) +
                             Text(text::collisionThoseOfSite) + ToQt(other.name) + ".\r" +
                             Text(text::collisionToAvoidLoss) + Text(text::collisionAdvice) + "\r" +
                             Text(text::collisionSaveAnyway);
    if (AskYesNo(this, question, MessageIcon::information, Text(text::setup)))
        return true;
    FocusField(*ui_->pageFile);
    return false;
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

void frmDettaglio::ShowRecord(const SiteRecord& site)
{
    ShowPages(site);
    transformations_->ShowRecord(site);
    modem_->ShowRecord(site);
    alerts_->ShowRecord(site);
}

void frmDettaglio::ShowPages(const SiteRecord& site)
{
    if (site.enabled)
        SetAbilitato(*site.enabled);
    ui_->pageConnessione->ShowRecord(site);
    ui_->pageAcquisizione->ShowRecord(site);
    ui_->pageFile->ShowRecord(site);
}

// Fills every field, since a save writes every key; a row only if its list has a selection.
SiteRecord frmDettaglio::TakeRecord() const
{
    SiteRecord site;
    site.enabled = ui_->chkAbilitato->isChecked();
    ui_->pageConnessione->FillRecord(site);
    ui_->pageAcquisizione->FillRecord(site);
    ui_->pageFile->FillRecord(site);
    transformations_->FillRecord(site);
    modem_->FillRecord(site);
    alerts_->FillRecord(site);
    return site;
}

} // namespace corvrec
