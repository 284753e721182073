#pragma once

#include "core/device/modem_session.h"
#include "core/site/modem_catalogue.h"
#include "ui/editor/option_dialog.h"

#include <filesystem>
#include <memory>

namespace Ui
{
class frmModem;
}

namespace corvrec
{

// The dial-up settings of a remote site, and the modem catalogue, which offers an initialisation string for
// each model.
class frmModem final : public OptionDialog
{
    Q_OBJECT

public:
    // directory: the program's own, which holds modem.dat.
    explicit frmModem(const std::filesystem::path& directory, QWidget* parent = nullptr);
    ~frmModem() override;

    void RegisterUndo() override;
    void ShowRecord(const SiteRecord& site) override;
    void FillRecord(SiteRecord& site) const override;

    // Selects the first model of the catalogue, with its initialisation string.
    void SelectFirstModel();

    // The values that dialling needs.
    ModemSettings Settings() const;

protected:
    void RestoreUndo() override;

private:
    void FillModels();
    [[nodiscard]] bool IsCatalogueEmpty() const;
    void cboModem_Click();
    void OK_Click();

    std::unique_ptr<Ui::frmModem> ui_;
    ModemCatalogue catalogue_;
    int undoRow_ = 0;
};

} // namespace corvrec
