#include "app/frmSiti.h"

#include "comm/event_pump.h"
#include "config/conversions.h"
#include "config/profile_file.h"
#include "editor/frmDettaglio.h"
#include "resources/texts.h"
#include "ui_frmSiti.h"
#include "widgets/dialogs.h"
#include "widgets/messages.h"
#include "widgets/qt_text.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <utility>

namespace corvrec
{

namespace
{

constexpr std::array kScheduleTexts{text::continuous, text::hourly, text::daily, text::weekly};

// Height of the window at its first showing, in lines of text.
constexpr int kFewestLines = 22;
constexpr int kMostLines = 36;

SiteRow RowOf(const ListedSite& site)
{
    const QString schedule =
        site.schedule ? Text(kScheduleTexts.at(static_cast<std::size_t>(*site.schedule))) : QString();
    return {.name = site.name, .code = site.code, .enabled = site.enabled, .schedule = ToStd(schedule)};
}

// Qt takes "[*]" out of a title; doubled, it is shown as it stands.
QString TitleText(QString text)
{
    return text.replace("[*]", "[*][*]");
}

} // namespace

frmSiti::frmSiti(Environment environment)
    : environment_(std::move(environment))
    , ui_(std::make_unique<Ui::frmSiti>())
{
    ui_->setupUi(this);
    connect(ui_->cmdAggiungi, &QPushButton::clicked, this, &frmSiti::cmdAggiungi_Click);
    connect(ui_->cmdRimuovi, &QPushButton::clicked, this, &frmSiti::cmdRimuovi_Click);
    connect(ui_->cmdProperties, &QPushButton::clicked, this, &frmSiti::cmdProperties_Click);
    connect(ui_->cmdChiudi, &QPushButton::clicked, this, &frmSiti::cmdChiudi_Click);
    // Not "activated": where the desktop activates on a single click it would open the editor at each
    // selection.
    connect(ui_->dgrdGrigliaSiti, &QTableView::doubleClicked, this, &frmSiti::cmdProperties_Click);
    ui_->dgrdGrigliaSiti->installEventFilter(this);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    ui_->dgrdGrigliaSiti->setAccessibleName(Text(text::siteList));
}

frmSiti::~frmSiti() = default;

bool frmSiti::Load()
{
    std::vector<SiteRow> rows;
    std::ranges::transform(ListSites(environment_.settings), std::back_inserter(rows), RowOf);
    sites_.SetRows(std::move(rows));
    ui_->dgrdGrigliaSiti->setModel(&sites_);
    FitColumns();
    QHeaderView* const captions = ui_->dgrdGrigliaSiti->horizontalHeader();
    captions->setSectionResizeMode(QHeaderView::Fixed);
    // Not in the form: the header would come back to the width that the column had before it was fitted.
    captions->setStretchLastSection(true);

    const std::optional<std::string> com = ReadComPort(environment_.settings);
    if (!com) {
        ShowMessage(this, Text(text::fileUnreadable) + "\r" + Text(text::comPortUnreadable),
                    MessageIcon::exclamation, Text(text::application));
        return false;
    }
    setWindowTitle(TitleText(Text(text::application) + " - " + ToQt(*com)));
    EnableCommands();
    CentreDialog(*this);
    return true;
}

void frmSiti::LoadEditor()
{
    editor_ = std::make_unique<frmDettaglio>(environment_, *this, this);
}

void frmSiti::RefreshGrid()
{
    sites_.Refresh();
    SetCurrentRow(0);
}

std::string frmSiti::SelectedSite() const
{
    const int row = CurrentRow();
    return row < 0 ? std::string() : sites_.Rows().at(static_cast<std::size_t>(row)).code;
}

std::string frmSiti::SelectedName() const
{
    const int row = CurrentRow();
    return row < 0 ? std::string() : sites_.Rows().at(static_cast<std::size_t>(row)).name;
}

std::span<const SiteRow> frmSiti::Sites() const
{
    return sites_.Rows();
}

int frmSiti::ComPort() const
{
    return Whole16(LeadingNumber(ToStd(windowTitle().right(1))));
}

std::int32_t frmSiti::lAbilitate() const
{
    return static_cast<std::int32_t>(
        std::ranges::count_if(sites_.Rows(), [](const SiteRow& row) { return row.enabled != 0; }));
}

bool frmSiti::bCercaContAbilitata() const
{
    const std::string continuous = ToStd(Text(text::continuous));
    return std::ranges::any_of(sites_.Rows(), [&continuous](const SiteRow& row) {
        return row.schedule == continuous && row.enabled != 0;
    });
}

// As wide as the columns, and as high as the list of a usual recorder.
QSize frmSiti::sizeHint() const
{
    const QSize hint = QWidget::sizeHint();
    const int line = fontMetrics().lineSpacing();
    return {hint.width(), std::clamp(hint.height(), line * kFewestLines, line * kMostLines)};
}

bool frmSiti::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui_->dgrdGrigliaSiti && event->type() == QEvent::KeyPress) {
        // click() does nothing on a button that is disabled.
        switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            ui_->cmdProperties->click();
            return true;
        case Qt::Key_Insert:
            ui_->cmdAggiungi->click();
            return true;
        case Qt::Key_Delete:
            ui_->cmdRimuovi->click();
            return true;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmSiti::cmdAggiungi_Click()
{
    editor_->InitFormDettagli();
    editor_->SetNuovo(true);
    editor_->SelectTab(0);
    editor_->SetAbilitato(true);
    editor_->exec();
    if (editor_->Cancel())
        return;
    sites_.Append(editor_->Row());
    FitColumns();
    EnableCommands();
    sites_.Refresh();
    SetCurrentRow(sites_.rowCount() - 1);
}

void frmSiti::cmdRimuovi_Click()
{
    if (CurrentRow() < 0) // clicked while the last site was being removed, before the button was disabled
        return;
    const QString question = Text(text::removingSite) + "\r" + Text(text::wantToContinue);
    if (!AskYesNo(this, question, MessageIcon::exclamation, Text(text::wantToContinue)))
        return;
    RemoveSite(environment_.settings, SelectedSite());
    environment_.settings.Flush();
    sites_.Remove(CurrentRow());
    FitColumns();
    environment_.events.Process(std::nullopt);
    EnableCommands();
    sites_.Refresh();
    SetCurrentRow(sites_.rowCount() - 1);
}

void frmSiti::cmdProperties_Click()
{
    if (CurrentRow() < 0) // as above
        return;
    editor_->InitFormDettagli();
    editor_->SetNuovo(false);
    editor_->SelectTab(0);
    editor_->EnableIdentity(false);
    editor_->MostraDati(SelectedSite());
    editor_->exec();
    if (!editor_->Cancel()) {
        const SiteRow edited = editor_->Row();
        sites_.SetState(CurrentRow(), edited.enabled, edited.schedule);
        FitColumns();
    }
    editor_->EnableIdentity(true);
}

void frmSiti::cmdChiudi_Click()
{
    if (lAbilitate() >= 2 && bCercaContAbilitata()) {
        ShowMessage(this, Text(text::continuousNotAlone), MessageIcon::exclamation, Text(text::attention));
        return;
    }
    close();
}

int frmSiti::CurrentRow() const
{
    return ui_->dgrdGrigliaSiti->currentIndex().row();
}

// The grid stands on its only row by itself, so that commands never lack a site to act on.
void frmSiti::SetCurrentRow(int row)
{
    ui_->dgrdGrigliaSiti->setCurrentIndex(sites_.index(row, 0));
}

void frmSiti::EnableCommands()
{
    const bool hasSites = sites_.rowCount() > 0;
    ui_->cmdProperties->setEnabled(hasSites);
    ui_->cmdRimuovi->setEnabled(hasSites);
}

// When the rows change, and not at each change of the window as the header would do it: each cell is
// measured.
void frmSiti::FitColumns()
{
    ui_->dgrdGrigliaSiti->resizeColumnsToContents();
}

} // namespace corvrec
