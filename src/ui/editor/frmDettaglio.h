#pragma once

#include "core/site/site_record.h"
#include "ui/editor/environment.h"
#include "ui/editor/omission.h"

#include <QDialog>

#include <memory>
#include <optional>
#include <string_view>

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
struct SiteRow;

// The site editor. Created once and hidden between uses. One use is: InitFormDettagli, SetNuovo,
// SelectTab(0), for an existing site MostraDati, exec, Cancel.
class frmDettaglio : public QDialog
{
    Q_OBJECT

public:
    // list must outlive the dialog, and so must what the environment refers to.
    frmDettaglio(Environment environment, const SiteListView& list, QWidget* parent = nullptr);
    ~frmDettaglio() override;

    // Shows the stored settings of the site with this code (UTF-8). Its name comes from the list's current
    // row.
    void MostraDati(std::string_view code);

    // Whether the last use ended without saving.
    bool Cancel() const { return cancel_; }
    void SetCancel(bool cancel) { cancel_ = cancel; }

    // Whether the editor holds a site that is not in the settings file yet.
    bool Nuovo() const { return nuovo_; }
    void SetNuovo(bool nuovo) { nuovo_ = nuovo; }

    // Sets the controls to the values of a new site, for the keys that an existing site lacks. The flow
    // characters, the weekdays and the option dialogs keep their values.
    void InitFormDettagli();

    // Sets all controls, those of the option dialogs too, to the values of a new site, so that nothing of the
    // last open site gets into it.
    void ShowFirstState();

    // Empties name and code.
    void ClearIdentity();

    // Whether no listed site has this name or this code, ignoring case, and the code is no section of the
    // file's own ("General", "Siti"). Always true for an existing site.
    bool SitoUnivoco(const QString& strNomeSito, const QString& strCodSito) const;

    // Fills the speed list, with or without the three high speeds, and selects the same speed again; none if
    // the new list lacks it.
    void ComboVelocita(bool highSpeeds);

    // Name and code can be changed for a new site only.
    void EnableIdentity(bool enabled);

    // Brings a page to the front, counted from 0. A number that no page has does nothing.
    void SelectTab(int tab);

    // Ticks or clears the site's "enabled" box.
    void SetAbilitato(bool enabled);

    // The edited site as a row of the site list.
    SiteRow Row() const;

    // Escape and the close box act like the Annulla button.
    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ConnectControls();
    void NextTab(int step);

    void OK_Click();
    void Annulla_Click();

    bool FieldsComplete();
    std::optional<Omission> Missing() const;
    bool SharingFilesAccepted();
    std::string_view Save();

    SiteRecord FirstValues() const;
    void ShowRecord(const SiteRecord& site);
    void ShowPages(const SiteRecord& site);
    SiteRecord TakeRecord() const;

    Environment environment_;
    const SiteListView& list_;
    std::unique_ptr<Ui::frmDettaglio> ui_;
    std::unique_ptr<frmTrasfAvanzate> transformations_;
    std::unique_ptr<frmFileAvanzate> alerts_;
    std::unique_ptr<frmModem> modem_;
    bool cancel_ = false;
    bool nuovo_ = false;
};

} // namespace corvrec
