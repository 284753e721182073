#pragma once

#include <QDialog>

#include <memory>

class QCheckBox;

namespace Ui
{
class frmTrasfAvanzate;
}

namespace corvrec
{

struct SiteRecord;

// The line transformations that the recorder applies to what the exchange sends. The check boxes hold the
// values: loading a site sets them, saving reads them, and Annulla undoes the user's changes.
class frmTrasfAvanzate : public QDialog
{
    Q_OBJECT

public:
    explicit frmTrasfAvanzate(QWidget* parent = nullptr);
    ~frmTrasfAvanzate() override;

    // Remembers the values that Annulla restores. To be called before each showing.
    void RegisterUndo() { undo_ = Take(); }

    // Resets the check boxes to their values at the program's start.
    void ShowFirstState() { Show(firstState_); }

    // A value that the record lacks stays as it is.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // Escape and the close box act like the Annulla button.
    void reject() override { Annulla_Click(); }

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void OK_Click();
    void Annulla_Click();

    struct Values {
        bool fixCrLf = false;
        bool addDate = false;
        bool dropNulls = false;
        bool addTime = false;
    };

    Values Take() const;
    void Show(const Values& values);

    std::unique_ptr<Ui::frmTrasfAvanzate> ui_;
    Values firstState_;
    Values undo_;
};

} // namespace corvrec
