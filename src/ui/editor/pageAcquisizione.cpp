#include "ui/editor/pageAcquisizione.h"

#include "core/site/conversions.h"
#include "ui/editor/frmTrasfAvanzate.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/texts.h"
#include "ui_pageAcquisizione.h"

#include <QFocusEvent>

#include <array>

namespace corvrec
{

namespace
{

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

} // namespace

pageAcquisizione::pageAcquisizione(QWidget* parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui::pageAcquisizione>())
{
    ui_->setupUi(this);
    connect(ui_->cboRicorrenza, &QComboBox::currentIndexChanged, this,
            &pageAcquisizione::cboRicorrenza_Click);
    connect(ui_->cmdTAvanzate, &QPushButton::clicked, this, &pageAcquisizione::cmdTAvanzate_Click);
    ui_->mskOrario->installEventFilter(this);
    ui_->mskValore->installEventFilter(this);

    // Names for screen readers: these have no caption.
    ui_->lstGiorni->setAccessibleName(Text(text::weekdays));
    ui_->mskOrario->setAccessibleName(Text(text::startTime));

    for (const TextId day : kWeekdayNames)
        ui_->lstGiorni->addItem(Text(day));
    QStringList kinds;
    for (const TextId kind : kScheduleTexts)
        kinds.append(Text(kind));
    FillList(*ui_->cboRicorrenza, kinds);
}

pageAcquisizione::~pageAcquisizione() = default;

void pageAcquisizione::Load(frmTrasfAvanzate& transformations)
{
    transformations_ = &transformations;
    ReserveSentence();
}

// Keeps the fields of the schedule's sentence in place, whichever of its words are shown.
void pageAcquisizione::ReserveSentence()
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

void pageAcquisizione::ShowRecord(const SiteRecord& site)
{
    // The kind before the interval: its rule resets the interval.
    if (site.schedule)
        SelectRow(*ui_->cboRicorrenza, static_cast<int>(*site.schedule), *this,
                  &pageAcquisizione::cboRicorrenza_Click);
    for (int row = 0; site.weekdays && row < ui_->lstGiorni->count(); ++row) {
        // Deliberate: marks are only added. A day that is not stored keeps its mark.
        if ((*site.weekdays & kWeekdayRows.at(static_cast<std::size_t>(row))) != 0)
            ui_->lstGiorni->SetMarked(row, true);
    }
    if (site.interval)
        ui_->mskValore->setText(ToQt(*site.interval));
    if (site.startTime)
        ui_->mskOrario->setText(ToQt(*site.startTime));
    if (site.marked)
        marked_ = *site.marked;
}

void pageAcquisizione::FillRecord(SiteRecord& site) const
{
    if (ui_->cboRicorrenza->currentIndex() >= 0)
        site.schedule = static_cast<ScheduleKind>(ui_->cboRicorrenza->currentIndex());
    site.weekdays = 0;
    for (int row = 0; row < ui_->lstGiorni->count(); ++row) {
        if (ui_->lstGiorni->Marked(row))
            *site.weekdays |= kWeekdayRows.at(static_cast<std::size_t>(row));
    }
    site.interval = ToStd(ui_->mskValore->text());
    site.startTime = ToStd(ui_->mskOrario->text());
    site.marked = marked_;
}

void pageAcquisizione::UnmarkDays()
{
    for (int row = 0; row < ui_->lstGiorni->count(); ++row)
        ui_->lstGiorni->SetMarked(row, false);
}

std::optional<Omission> pageAcquisizione::Missing()
{
    // For every kind, even the continuous one; and under the application's title.
    if (!IsTime(ToStd(ui_->mskOrario->text())))
        return Omission{
            .message = text::startTimeInvalid, .title = text::application, .field = ui_->mskOrario};
    if (IsHourly() && !IsTime(ToStd(ui_->mskValore->text())))
        return Omission{.message = text::intervalInvalid, .field = ui_->mskValore};
    // The list's own visibility counts, whichever page is in front.
    if (!ui_->lstGiorni->isHidden() && !ui_->lstGiorni->AnyMarked())
        return Omission{.message = text::weekdayMissing, .pageBefore = this, .field = ui_->lstGiorni};
    return std::nullopt;
}

bool pageAcquisizione::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn && IsWithinWindow(*static_cast<QFocusEvent*>(event))) {
        if (watched == ui_->mskOrario)
            mskOrario_GotFocus();
        else
            mskValore_GotFocus();
    }
    return QWidget::eventFilter(watched, event);
}

bool pageAcquisizione::IsHourly() const
{
    return ui_->cboRicorrenza->currentIndex() == static_cast<int>(ScheduleKind::hourly);
}

void pageAcquisizione::cboRicorrenza_Click()
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

void pageAcquisizione::mskOrario_GotFocus()
{
    ui_->mskOrario->setSelection(0, kStartTimeLength);
}

void pageAcquisizione::mskValore_GotFocus()
{
    // Deliberate: the text of the start time is selected, not the interval's own. Older editors do it.
    const auto length = IsHourly() ? kStartTimeLength : static_cast<int>(ui_->mskOrario->text().length());
    ui_->mskOrario->setSelection(0, length);
}

void pageAcquisizione::cmdTAvanzate_Click()
{
    transformations_->Open(*ui_->cmdTAvanzate);
}

} // namespace corvrec
