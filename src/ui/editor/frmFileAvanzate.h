#pragma once

#include "ui/editor/option_dialog.h"

#include <memory>

namespace Ui
{
class frmFileAvanzate;
}

namespace corvrec
{

// The site's two alerts: data file missing for some seconds, and little free space on drive C:.
class frmFileAvanzate final : public OptionDialog
{
    Q_OBJECT

public:
    explicit frmFileAvanzate(QWidget* parent = nullptr);
    ~frmFileAvanzate() override;

    void ShowRecord(const SiteRecord& site) override;
    void FillRecord(SiteRecord& site) const override;

private:
    void chkFile_Click();
    void chkSpazio_Click();
    void OK_Click();

    std::unique_ptr<Ui::frmFileAvanzate> ui_;
};

} // namespace corvrec
