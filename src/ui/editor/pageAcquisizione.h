#pragma once

#include "core/site/site_record.h"
#include "ui/editor/omission.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace Ui
{
class pageAcquisizione;
}

namespace corvrec
{

class frmTrasfAvanzate;

// The second page of the site editor: when the site's data is acquired.
class pageAcquisizione : public QWidget
{
    Q_OBJECT

public:
    explicit pageAcquisizione(QWidget* parent = nullptr);
    ~pageAcquisizione() override;

    // To be called once, when the page's texts are set. The dialog must outlive the page's last use.
    void Load(frmTrasfAvanzate& transformations);

    // A value that the record lacks stays as it is, and so do the marks of days that are not in the record.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    void UnmarkDays();

    // The first check that fails.
    std::optional<Omission> Missing();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void ReserveSentence();
    [[nodiscard]] bool IsHourly() const;

    void cboRicorrenza_Click();
    void mskOrario_GotFocus();
    void mskValore_GotFocus();
    void cmdTAvanzate_Click();

    std::unique_ptr<Ui::pageAcquisizione> ui_;
    frmTrasfAvanzate* transformations_ = nullptr;
    // "Ora" of the last loaded site ended in "p". Written back when any site is saved.
    bool marked_ = false;
};

} // namespace corvrec
