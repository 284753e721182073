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

// The site list, the program's main window. It adds, removes and edits sites, and closes the program. It owns
// the site array and enforces the one rule that spans sites: a site of continuous acquisition must not be
// enabled together with other sites.
class frmSiti : public QWidget, public SiteListView
{
    Q_OBJECT

public:
    // What the environment refers to must outlive the window.
    explicit frmSiti(Environment environment);
    ~frmSiti() override;

    // Reads the sites and the serial port from the settings file. False, after a message, when the file names
    // no port; the program must end then.
    [[nodiscard]] bool Load();

    // Creates the site editor, hidden. To be called once, before a site is edited.
    void LoadEditor();

    // Makes the grid read the site array again, and marks the first row.
    void RefreshGrid();

    std::string SelectedSite() const override;
    std::string SelectedName() const override;
    std::span<const SiteRow> Sites() const override;
    int ComPort() const override;

    // Number of enabled sites.
    std::int32_t lAbilitate() const;

    // Whether an enabled site is acquired continuously.
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

    // The first and the last part of adding a site; the caller sets values in between.
    void StartNewSite();
    void EditNewSite();

    int CurrentRow() const; // the marked row, or -1
    void SetCurrentRow(int row);

    // Enables the commands that need a site.
    void EnableCommands();

    // Shows the settings file's path below the list, and what is wrong with the file.
    void ShowFile();

    Environment environment_;
    std::unique_ptr<Ui::frmSiti> ui_;
    QMenu menu_;
    QAction* duplicate_ = nullptr;
    SiteGrid sites_;
    std::unique_ptr<frmDettaglio> editor_;
};

} // namespace corvrec
