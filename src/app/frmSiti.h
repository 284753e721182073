#pragma once

#include "app/site_grid.h"
#include "ui/editor/environment.h"
#include "ui/editor/site_list_view.h"

#include <QMenu>
#include <QWidget>

#include <cstdint>
#include <memory>

namespace Ui
{
class frmSiti;
}

namespace corvrec
{

class frmDettaglio;

// The site list, the program's main window: adds, removes and edits sites, and closes the program. It owns
// the site array and the one rule that spans sites: a site of continuous acquisition may not be enabled
// together with other sites.
class frmSiti : public QWidget, public SiteListView
{
    Q_OBJECT

public:
    explicit frmSiti(Environment environment);
    ~frmSiti() override;

    // Reads the sites and the port from the settings file. False, after a message, when the file names no
    // port: the program ends then.
    [[nodiscard]] bool Load();

    // Creates the site editor, hidden.
    void LoadEditor();

    // Makes the grid read the site array again.
    void RefreshGrid();

    std::string SelectedSite() const override;
    std::string SelectedName() const override;
    std::span<const SiteRow> Sites() const override;
    int ComPort() const override;

    // Number of enabled sites.
    std::int32_t lAbilitate() const;

    // Whether an enabled site is acquired continuously. Told by the shown text.
    bool bCercaContAbilitata() const;

    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void MakeMenu();
    void ShowMenu(const QPoint& where);

    void cmdAggiungi_Click();
    void Duplica_Click();
    void cmdRimuovi_Click();
    void cmdProperties_Click();
    void cmdChiudi_Click();
    void StartNewSite();
    void EditNewSite();

    int CurrentRow() const; // the marked one; -1: none
    void SetCurrentRow(int row);
    void EnableCommands();
    void ShowFile();

    Environment environment_;
    std::unique_ptr<Ui::frmSiti> ui_;
    QMenu menu_;
    QAction* duplicate_ = nullptr;
    SiteGrid sites_;
    std::unique_ptr<frmDettaglio> editor_;
};

} // namespace corvrec
