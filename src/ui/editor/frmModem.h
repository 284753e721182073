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

// The dial-up settings of a remote site, and the modem catalogue that offers an initialisation string for
// each model. The controls are the values: loading a site sets them, saving reads them, the user's changes
// can be undone by Annulla.
class frmModem : public QDialog
{
    Q_OBJECT

public:
    // directory: the program's own, where modem.dat lies.
    explicit frmModem(const std::filesystem::path& directory, QWidget* parent = nullptr);
    ~frmModem() override;

    // Records the values that Annulla brings back. Before each showing.
    void RegisterUndo() { undo_ = Take(); }

    // The values of the program's start.
    void ShowFirstState() { Show(firstState_); }

    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // What dialling needs of the values.
    ModemSettings Settings() const;

    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void FillModels();
    [[nodiscard]] bool IsCatalogueEmpty() const;
    void cboModem_Click();
    void OK_Click();
    void Annulla_Click();
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
