#pragma once

#include "ui/editor/option_dialog.h"

#include <array>
#include <memory>

class QCheckBox;

namespace Ui
{
class frmTrasfAvanzate;
}

namespace corvrec
{

// The line transformations that the recorder applies to what the exchange sends.
class frmTrasfAvanzate final : public OptionDialog
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
    // A check box, its value, and the text that explains it.
    struct Transformation {
        std::optional<bool> SiteRecord::*value;
        QCheckBox* box;
        TextId help;
    };

    void OK_Click();

    std::unique_ptr<Ui::frmTrasfAvanzate> ui_;
    std::array<Transformation, 4> transformations_{};
};

} // namespace corvrec
