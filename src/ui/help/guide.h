#pragma once

#include <QObject>

#include <memory>

class QCoreApplication;
class QWidget;

namespace corvrec
{

class frmGuida;

// The user's guide. F1 in any window of the program opens it at the window's chapter. A window names its
// chapter in the dynamic property kGuideChapter, and so may the pages of a tab control. A window that names
// none, such as a file chooser, has the chapter of the window that it belongs to.
//
// Nothing of the guide is loaded before the first F1. Its only window stays until the user closes it or the
// guide is destroyed; it does not keep the program running.
class Guide : public QObject
{
    Q_OBJECT

public:
    explicit Guide(QCoreApplication& application);
    ~Guide() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Open(const QString& chapter, const QWidget& asked);

    std::unique_ptr<frmGuida> window_;
};

} // namespace corvrec
