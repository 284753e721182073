#pragma once

#include "ui/editor/option_dialog.h"

#include <memory>

namespace Ui
{
class frmTrasfAvanzate;
}

namespace corvrec
{

// The line transformations that the recorder applies to what the exchange sends.
class frmTrasfAvanzate : public OptionDialog
{
    Q_OBJECT

public:
    explicit frmTrasfAvanzate(QWidget* parent = nullptr);
    ~frmTrasfAvanzate() override;

    void ShowRecord(const SiteRecord& site) override;
    void FillRecord(SiteRecord& site) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OK_Click();

    std::unique_ptr<Ui::frmTrasfAvanzate> ui_;
};

} // namespace corvrec
