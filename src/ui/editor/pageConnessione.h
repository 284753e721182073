#pragma once

#include "core/site/site_record.h"
#include "ui/editor/environment.h"

#include <QWidget>

#include <memory>
#include <string_view>

namespace Ui
{
class pageConnessione;
}

namespace corvrec
{

class frmModem;
class SiteListView;

// The first page of the site editor: the device, how it is reached, its handshake and its line.
class pageConnessione : public QWidget
{
    Q_OBJECT

public:
    explicit pageConnessione(QWidget* parent = nullptr);
    ~pageConnessione() override;

    // What the page's commands use. To be called once; all of it must outlive the page's last use.
    void Load(const Environment& environment, const SiteListView& list, frmModem& modem);

    // A value that the record lacks stays as it is.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // See frmDettaglio.
    void ComboVelocita(bool highSpeeds);

    // Runs the rules for leaving Xon and Xoff, wherever the focus is.
    void FillFlowCharacters();

    // The field of a key without whose value a save stops. Throws std::out_of_range for any other key.
    QWidget& FieldOf(std::string_view key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cboTipoConn_Click();
    void optLocale_Click();
    void optRemoto_Click();
    void cboHandS_Click();
    void EnableHandshake(bool enabled);
    void EnableFlowCharacters(bool enabled);
    void EnableConnectionKind(bool enabled);
    void Field_LostFocus(QObject* field);
    void btnModem_Click();
    void cmdSX_Click();

    std::unique_ptr<Ui::pageConnessione> ui_;
    const Environment* environment_ = nullptr;
    const SiteListView* list_ = nullptr;
    frmModem* modem_ = nullptr;
};

} // namespace corvrec
