#pragma once

#include <QWidget>

#include <memory>

namespace Ui
{
class frmGuida;
}

namespace corvrec
{

// The window of the guide. It has no parent and the program's dialogs block only the windows that they belong
// to, so it can be read beside any of them.
class frmGuida : public QWidget
{
    Q_OBJECT

public:
    frmGuida();
    ~frmGuida() override;

    // Comes to the front with this chapter (the anchor of its heading) on top. When it was closed, it opens
    // next to the window that it explains, over it only where the screen has no room beside it.
    void Open(const QString& chapter, const QWidget* explained = nullptr);

private:
    void PlaceNextTo(const QWidget& explained);
    void cmdSommario_Click();
    void Cerca();
    void CercaIndietro();
    void ShowOutcome(bool found);

    std::unique_ptr<Ui::frmGuida> ui_;
};

} // namespace corvrec
