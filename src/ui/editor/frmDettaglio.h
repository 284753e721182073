#pragma once

#include "core/site/site_record.h"
#include "core/text_ids.h"
#include "ui/editor/environment.h"

#include <QDialog>

#include <memory>
#include <string_view>

class QLineEdit;

namespace Ui
{
class frmDettaglio;
}

namespace corvrec
{

class SiteListView;
class frmFileAvanzate;
class frmModem;
class frmTrasfAvanzate;
struct SiteFiles;
struct SiteRow;

// The site editor. Created once and hidden between uses; a use is: InitFormDettagli, SetNuovo, SelectTab(0),
// MostraDati for an existing site, exec, Cancel.
class frmDettaglio : public QDialog
{
    Q_OBJECT

public:
    frmDettaglio(Environment environment, const SiteListView& list, QWidget* parent = nullptr);
    ~frmDettaglio() override;

    // Shows the stored settings of the site with this code (UTF-8); its name comes from the list's current
    // row.
    void MostraDati(std::string_view code);

    // True when the last use ended without saving.
    bool Cancel() const { return cancel_; }
    void SetCancel(bool cancel) { cancel_ = cancel; }

    // True while the editor holds a site that is not in the settings file yet.
    bool Nuovo() const { return nuovo_; }
    void SetNuovo(bool nuovo) { nuovo_ = nuovo; }

    // The new-site defaults. Controls that they do not name keep what they hold.
    void InitFormDettagli();

    // Puts those controls back to what they held at the program's start, the option dialogs' too: nothing of
    // the site that was open before gets into a new one. The mark of "Ora" is no control and stays.
    void ShowFirstState();

    // Empties name and code.
    void ClearIdentity();

    // Whether no listed site has this name or this code, and the code is no section of the file's own; letter
    // case does not count. An existing site is never tested.
    bool SitoUnivoco(const QString& strNomeSito, const QString& strCodSito) const;

    // Fills the speed list, with or without the three high speeds, and chooses the speed again that was
    // chosen before; none when the new list lacks it.
    void ComboVelocita(bool highSpeeds);

    // Name and code of an existing site cannot be changed.
    void EnableIdentity(bool enabled);

    void SelectTab(int tab);
    void SetAbilitato(bool enabled);

    // The edited site as the site list shows it.
    SiteRow Row() const;

    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ConnectControls();
    void NameControls();
    void FillLists();
    void ReserveSentence();

    void cboTipoConn_Click();
    void optLocale_Click();
    void optRemoto_Click();
    void cboHandS_Click();
    void cboRicorrenza_Click();
    void EnableHandshake(bool enabled);
    void EnableFlowCharacters(bool enabled);
    void EnableConnectionKind(bool enabled);

    void Field_LostFocus(QObject* field);
    void FillFlowCharacters();
    void mskOrario_GotFocus();
    void mskValore_GotFocus();
    void NextTab(int step);

    void OK_Click();
    void Annulla_Click();
    void btnModem_Click();
    void cmdTAvanzate_Click();
    void cmdFileAvanzate_Click();
    void cmdSX_Click();
    void Browse(QLineEdit& field);

    bool FieldsComplete();
    bool ScheduleComplete();
    bool TextsComplete();
    bool SharingFilesAccepted();
    SiteFiles Files() const;
    void Save();
    void FocusIncompleteField();

    void ShowRecord(const SiteRecord& site);
    void ShowConnection(const SiteRecord& site);
    void ShowSchedule(const SiteRecord& site);
    void ShowFiles(const SiteRecord& site);
    SiteRecord TakeRecord() const;

    Environment environment_;
    const SiteListView& list_;
    std::unique_ptr<Ui::frmDettaglio> ui_;
    std::unique_ptr<frmTrasfAvanzate> transformations_;
    std::unique_ptr<frmFileAvanzate> alerts_;
    std::unique_ptr<frmModem> modem_;
    SiteRecord firstState_;
    bool cancel_ = false;
    bool nuovo_ = false;
    bool marked_ = false; // "Ora" of the site loaded last ended in "p"; saving any site writes it back
};

} // namespace corvrec
