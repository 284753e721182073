#pragma once

#include "core/device/modem_session.h"
#include "core/site/modem_catalogue.h"
#include "core/text_ids.h"

#include <QDialog>
#include <QString>

#include <filesystem>
#include <memory>

namespace Ui
{
class frmModem;
}

namespace corvrec
{

struct SiteRecord;

// The dial-up settings of a remote site, and the modem catalogue, which offers an initialisation string for
// each model. The controls hold the values: loading a site sets them, saving reads them, and Annulla undoes
// the user's changes.
class frmModem : public QDialog
{
    Q_OBJECT

public:
    // directory: the program's own, which holds modem.dat.
    explicit frmModem(const std::filesystem::path& directory, QWidget* parent = nullptr);
    ~frmModem() override;

    // Remembers the values that Annulla restores. To be called before each showing.
    void RegisterUndo() { undo_ = Take(); }

    // Resets the controls to their values at the program's start.
    void ShowFirstState() { Show(firstState_); }

    // A value that the record lacks stays as it is.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // The values that dialling needs.
    ModemSettings Settings() const;

    // Escape and the close box act like the Annulla button.
    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FillModels();
    [[nodiscard]] bool IsCatalogueEmpty() const;
    void cboModem_Click();
    void OK_Click();
    void Annulla_Click();

    // Shows the message and focuses the field when `missing`; returns `missing`.
    bool Missing(QWidget& field, TextId message, bool missing);

    struct Values {
        int model = 0;
        QString number;
        QString attempts;
        QString initString;
        QString resetString;
        bool tone = true;
    };

    Values Take() const;
    void Show(const Values& values);

    std::unique_ptr<Ui::frmModem> ui_;
    ModemCatalogue catalogue_;
    Values firstState_;
    Values undo_;
};

} // namespace corvrec
