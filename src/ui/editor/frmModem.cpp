#include "ui/editor/frmModem.h"

#include "core/site/conversions.h"
#include "core/site/new_site.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/texts.h"
#include "ui_frmModem.h"

#include <QAbstractListModel>

namespace corvrec
{

namespace
{

// Offered when the catalogue is empty; any Hayes modem understands it. Among other things it turns off
// automatic answering (S0=0), makes the carrier line follow the carrier (&C1), which the buffer window
// checks, and makes the modem hang up when DTR falls (&D2).
constexpr auto kGenericInitString = "X3S0=0&M5&K0&C1&D2&R1";

// The catalogue's names as a list model. Each name is made only when it is asked for, as there may be a
// million.
class ModelNames final : public QAbstractListModel
{
public:
    ModelNames(const ModemModels& models, QObject* parent)
        : QAbstractListModel(parent)
        , models_(models)
    {
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override
    {
        // A catalogue has fewer than 2^31 lines.
        return parent.isValid() ? 0 : static_cast<int>(models_.Count());
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
            return {};
        return ToQt(models_.At(static_cast<std::size_t>(index.row())).name);
    }

private:
    const ModemModels& models_;
};

} // namespace

frmModem::frmModem(const std::filesystem::path& directory, QWidget* parent)
    : OptionDialog(parent)
    , ui_(std::make_unique<Ui::frmModem>())
    , catalogue_(directory / "modem.dat")
{
    ui_->setupUi(this);
    // "activated" and not "currentIndexChanged": choosing the same model again restores its string.
    connect(ui_->cboModem, &QComboBox::activated, this, &frmModem::cboModem_Click);
    connect(ui_->OK, &QPushButton::clicked, this, &frmModem::OK_Click);
    connect(ui_->Annulla, &QPushButton::clicked, this, &frmModem::Annulla_Click);
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    TabToChosenOption(*this);
    FillModels();
    SelectFirstModel();
    ShowRecord(NewSite({}));
    GuardWheel(*this);
    CentreDialog(*this);
}

frmModem::~frmModem() = default;

void frmModem::FillModels()
{
    if (IsCatalogueEmpty())
        FillList(*ui_->cboModem, {Text(text::genericModem)});
    else
        ui_->cboModem->setModel(new ModelNames(catalogue_.Models(), this));
}

bool frmModem::IsCatalogueEmpty() const
{
    return catalogue_.Models().Count() == 0;
}

// The model by its row: its name may be how another one's begins.
void frmModem::RegisterUndo()
{
    OptionDialog::RegisterUndo();
    undo_.modemModel.reset();
    undoRow_ = ui_->cboModem->currentIndex();
}

void frmModem::RestoreUndo()
{
    SetRow(*ui_->cboModem, undoRow_);
    OptionDialog::RestoreUndo();
}

void frmModem::SelectFirstModel()
{
    SelectRow(*ui_->cboModem, 0, *this, &frmModem::cboModem_Click);
}

void frmModem::ShowRecord(const SiteRecord& site)
{
    // Without its rule: the site's own initialisation string follows, not the catalogue's.
    if (site.modemModel)
        SelectByPrefix(*ui_->cboModem, ToQt(*site.modemModel));
    if (site.initString)
        ui_->txtStringaInit->setText(ToQt(*site.initString));
    if (site.resetString)
        ui_->txtStringaReset->setText(ToQt(*site.resetString));
    if (site.dial) {
        (site.dial->tone ? ui_->optToni : ui_->optImpulsi)->setChecked(true);
        ui_->txtTelefono->setText(ToQt(site.dial->number));
    }
    if (site.importAttempts)
        ui_->txtTentImpor->setText(ToQt(*site.importAttempts));
}

void frmModem::FillRecord(SiteRecord& site) const
{
    site.modemModel = ToStd(ui_->cboModem->currentText());
    site.initString = ToStd(ui_->txtStringaInit->text());
    site.resetString = ToStd(ui_->txtStringaReset->text());
    site.dial = DialNumber{.tone = ui_->optToni->isChecked(), .number = ToStd(ui_->txtTelefono->text())};
    site.importAttempts = ToStd(ui_->txtTentImpor->text());
}

ModemSettings frmModem::Settings() const
{
    return {.resetString = ToStd(ui_->txtStringaReset->text()),
            .initString = ToStd(ui_->txtStringaInit->text()),
            .number = ToStd(ui_->txtTelefono->text()),
            .pulse = ui_->optImpulsi->isChecked()};
}

void frmModem::cboModem_Click()
{
    const auto row = static_cast<std::size_t>(ui_->cboModem->currentIndex());
    ui_->txtStringaInit->setText(IsCatalogueEmpty() ? QString(kGenericInitString)
                                                    : ToQt(catalogue_.Models().At(row).initString));
}

void frmModem::OK_Click()
{
    const bool isPositive = LeadingNumber(ToStd(ui_->txtTentImpor->text())) >= 1;
    if (RequireText(*ui_->txtTelefono, text::phoneNumberMissing) &&
        RequireText(*ui_->txtTentImpor, text::attemptsMissing) &&
        Require(isPositive, *ui_->txtTentImpor, text::attemptsBelowOne) &&
        RequireText(*ui_->txtStringaInit, text::initStringMissing) &&
        RequireText(*ui_->txtStringaReset, text::resetStringMissing))
        hide();
}

} // namespace corvrec
