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

    // Comes to the front with this chapter (the anchor of its heading) on top.
    void Open(const QString& chapter);

private:
    void cmdSommario_Click();
    void Cerca();

    std::unique_ptr<Ui::frmGuida> ui_;
};

} // namespace corvrec
