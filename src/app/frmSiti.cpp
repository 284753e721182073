#include "app/frmSiti.h"

#include "core/device/event_pump.h"
#include "core/file/profile_file.h"
#include "core/site/conversions.h"
#include "ui/editor/frmDettaglio.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"
#include "ui_frmSiti.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QTextDocument>

#include <algorithm>
#include <utility>

namespace corvrec
{

namespace
{

// Limits for the window's height when it first opens, in lines of text.
constexpr int kFewestLines = 22;
constexpr int kMostLines = 36;

// Font size of the line below the list, relative to the normal size.
constexpr double kSmallFont = 0.85;

// The part of a menu text that shows a key, named as on the user's keyboard.
QString KeyColumn(Qt::Key key)
{
    return u'\t' + QKeySequence(key).toString(QKeySequence::NativeText);
}

// The settings file's path as shown, with links resolved, so that the user finds the file that is really
// changed.
QString ShownPath(const std::filesystem::path& file)
{
    const QFileInfo info(QString::fromStdU16String(file.u16string()));
    return QDir::toNativeSeparators(info.exists() ? info.canonicalFilePath() : info.filePath());
}

// Qt removes "[*]" from a title; when doubled it is shown.
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
    // Not "activated": on desktops that activate on a single click, each selection would open the editor.
    connect(ui_->dgrdGrigliaSiti, &QTableView::doubleClicked, this, &frmSiti::cmdProperties_Click);
    ui_->dgrdGrigliaSiti->installEventFilter(this);
    connect(ui_->dgrdGrigliaSiti, &SiteTable::MenuRequested, this, &frmSiti::ShowMenu);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    ui_->dgrdGrigliaSiti->setAccessibleName(Text(text::siteList));
    MakeMenu();
    QFont small = ui_->lblFile->font();
    small.setPointSizeF(small.pointSizeF() * kSmallFont);
    ui_->lblFile->setFont(small);
}

frmSiti::~frmSiti() = default;

bool frmSiti::Load()
{
    sites_.SetRows(ListSites(environment_.settings));
    ui_->dgrdGrigliaSiti->setModel(&sites_);
    ui_->dgrdGrigliaSiti->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    ui_->dgrdGrigliaSiti->FitColumns();

    const std::optional<std::string> com = ReadComPort(environment_.settings);
    if (!com) {
        ShowMessage(this, Text(text::fileUnreadable) + "\r" + Text(text::comPortUnreadable),
                    MessageIcon::exclamation, Text(text::application));
        return false;
    }
    setWindowTitle(TitleText(Text(text::application) + " - " + ToQt(*com)));
    EnableCommands();
    CentreDialog(*this);
    ShowFile();
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

// Load puts the port's name at the end of the title.
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
    return std::ranges::any_of(sites_.Rows(), [](const SiteRow& row) {
        return row.schedule == ScheduleKind::continuous && row.enabled != 0;
    });
}

// As wide as the columns, and high enough for the list of a typical recorder.
QSize frmSiti::sizeHint() const
{
    const QSize hint = QWidget::sizeHint();
    const int line = fontMetrics().lineSpacing();
    return {hint.width(), std::clamp(hint.height(), line * kFewestLines, line * kMostLines)};
}

bool frmSiti::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == ui_->dgrdGrigliaSiti && event->type() == QEvent::KeyPress) {
        // click() does nothing on a disabled button.
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

// Permissions may have changed while another program was in front.
void frmSiti::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        ShowFile();
}

void frmSiti::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    ShowFile();
}

// The context menu: the buttons' commands, enabled with their buttons, and the only command without a button.
void frmSiti::MakeMenu()
{
    const auto addButton = [this](QPushButton& button, Qt::Key key) {
        QAction* const action = menu_.addAction(button.text() + KeyColumn(key));
        connect(action, &QAction::triggered, &button, &QPushButton::click);
        connect(&menu_, &QMenu::aboutToShow, action,
                [action, &button] { action->setEnabled(button.isEnabled()); });
        return action;
    };
    addButton(*ui_->cmdAggiungi, Qt::Key_Insert);
    duplicate_ = menu_.addAction(Text(text::duplicate));
    connect(duplicate_, &QAction::triggered, this, &frmSiti::Duplica_Click);
    addButton(*ui_->cmdRimuovi, Qt::Key_Delete);
    menu_.addSeparator();
    menu_.setDefaultAction(addButton(*ui_->cmdProperties, Qt::Key_Return));
}

void frmSiti::ShowMenu(const QPoint& where)
{
    duplicate_->setEnabled(CurrentRow() >= 0);
    menu_.popup(where);
}

void frmSiti::cmdAggiungi_Click()
{
    StartNewSite();
    editor_->SetAbilitato(true);
    EditNewSite();
}

// Starts a new site with the values of the marked one, except name and code.
void frmSiti::Duplica_Click()
{
    StartNewSite();
    editor_->MostraDati(SelectedSite());
    editor_->ClearIdentity();
    EditNewSite();
}

void frmSiti::StartNewSite()
{
    editor_->ShowFirstState();
    editor_->InitFormDettagli();
    editor_->SetNuovo(true);
    editor_->SelectTab(0);
}

void frmSiti::EditNewSite()
{
    editor_->exec();
    if (editor_->Cancel())
        return;
    sites_.Append(editor_->Row());
    ui_->dgrdGrigliaSiti->FitColumns();
    EnableCommands();
    ShowFile();
    sites_.Refresh();
    SetCurrentRow(sites_.rowCount() - 1);
}

void frmSiti::cmdRimuovi_Click()
{
    // The button may be clicked while the last site is being removed, before it is disabled.
    if (CurrentRow() < 0)
        return;
    const QString question = Text(text::removingSite) + "\r" + Text(text::wantToContinue);
    if (!AskYesNo(this, question, MessageIcon::exclamation, Text(text::wantToContinue)))
        return;
    RemoveSite(environment_.settings, SelectedSite());
    environment_.settings.Flush();
    sites_.Remove(CurrentRow());
    ui_->dgrdGrigliaSiti->FitColumns();
    environment_.events.Process(std::nullopt);
    EnableCommands();
    ShowFile();
    sites_.Refresh();
    SetCurrentRow(sites_.rowCount() - 1);
}

void frmSiti::cmdProperties_Click()
{
    if (CurrentRow() < 0) // as in cmdRimuovi_Click
        return;
    editor_->InitFormDettagli();
    editor_->SetNuovo(false);
    editor_->SelectTab(0);
    editor_->EnableIdentity(false);
    editor_->MostraDati(SelectedSite());
    editor_->exec();
    if (!editor_->Cancel()) {
        sites_.SetRow(CurrentRow(), editor_->Row());
        ui_->dgrdGrigliaSiti->FitColumns();
    }
    editor_->EnableIdentity(true);
}

void frmSiti::cmdChiudi_Click()
{
    // The rule that spans sites: checked only here, when the user closes the program with the button.
    if (lAbilitate() >= 2 && bCercaContAbilitata()) {
        ShowMessage(this, Text(text::continuousNotAlone), MessageIcon::exclamation, Text(text::attention));
        return;
    }
    close();
}

int frmSiti::CurrentRow() const
{
    const QModelIndexList marked = ui_->dgrdGrigliaSiti->selectionModel()->selectedRows();
    return marked.isEmpty() ? -1 : marked.constFirst().row();
}

// The grid always marks a row if it has one, so that no command lacks a site to act on.
void frmSiti::SetCurrentRow(int row)
{
    ui_->dgrdGrigliaSiti->MarkRow(row);
}

void frmSiti::EnableCommands()
{
    const bool hasSites = sites_.rowCount() > 0;
    ui_->cmdProperties->setEnabled(hasSites);
    ui_->cmdRimuovi->setEnabled(hasSites);
}

// Nothing else reports a file that cannot be written, or sites for which the list has no room. Say so here
// before it surprises anybody.
void frmSiti::ShowFile()
{
    const QString path = ShownPath(environment_.directory / "Corvrec.ini");
    QString note;
    if (!environment_.settings.IsWritable())
        note += " – " + Text(text::readOnly);
    if (!ListHoldsAllSites(environment_.settings))
        note += " – " + Text(text::listFull);
    const QFontMetrics metrics = ui_->lblFile->fontMetrics();
    const int room = ui_->lblFile->width() - metrics.horizontalAdvance(note);
    ui_->lblFile->setText(metrics.elidedText(path, Qt::ElideMiddle, room) + note);
    ui_->lblFile->setAccessibleName(path + note);
    ui_->lblFile->setAccessibleDescription(path + note); // not the tool tip's mark-up
    ui_->lblFile->setToolTip(Qt::convertFromPlainText(path + note));
}

} // namespace corvrec
