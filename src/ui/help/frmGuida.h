#pragma once

#include <QWidget>

#include <memory>

namespace Ui
{
class frmGuida;
}

namespace corvrec
{

// The guide's window. It has no parent, and the program's dialogs block only the window that they belong to,
// so the guide can be read next to any of them.
class frmGuida : public QWidget
{
    Q_OBJECT

public:
    frmGuida();
    ~frmGuida() override;

    // Comes to the front with this chapter, given by its heading's anchor, at the top. If it was closed, it
    // opens next to the window that it explains; it covers that window only where the screen has no room next
    // to it.
    void Open(const QString& chapter, const QWidget* explained = nullptr);

private:
    void PlaceNextTo(const QWidget& explained);
    void cmdSommario_Click();
    void Cerca();
    void CercaIndietro();

    // Reports next to the search field when nothing was found.
    void ShowOutcome(bool found);

    std::unique_ptr<Ui::frmGuida> ui_;
};

} // namespace corvrec
