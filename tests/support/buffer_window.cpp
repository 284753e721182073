#include "tests/support/buffer_window.h"

#include "tests/support/controls.h"
#include "tests/support/line_script.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"

#include <QApplication>
#include <QTest>

#include <memory>

namespace corvrec
{

namespace
{

ModemSettings Modem()
{
    return {.resetString = "&F", .initString = "X3", .number = "0123", .pulse = false};
}

LineSettings Line()
{
    return {.commPort = 2, .settings = "9600,N,8,1", .handshaking = 0};
}

} // namespace

QStringList ShownValues(frmSX& window)
{
    QStringList values;
    for (const char* const label :
         {"lblMemoria", "lblCondizione", "lblRiempimento", "lblRipetizioni", "lblUltimoscarico",
          "lblUltimiDati", "lblGuasto", "lblModello", "lblFirmware", "lblData", "lblOra", "lblSelezione",
          "lblStampante", "lblModem"})
        values.append(Shown(SiteWindow::Part<QWidget>(window, label)));
    return values;
}

QStringList EnabledButtons(frmSX& window)
{
    QStringList names;
    for (const char* const name : {"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}) {
        if (IsEnabled(SiteWindow::Part<QPushButton>(window, name)))
            names.append(name);
    }
    return names;
}

QStringList BusyWindows(frmSX& window)
{
    QStringList names;
    for (const QWidget* const each :
         {static_cast<QWidget*>(&window), &SiteWindow::Part<QWidget>(window, "frmConnessione")}) {
        if (each->cursor().shape() == Qt::WaitCursor)
            names.append(each->objectName());
    }
    return names;
}

BufferWindow::BufferWindow(Reached reached, BufferModel modelloSX)
    : port_(new FakePort(clock_))
    , window_(std::unique_ptr<SerialPort>(port_), clock_, script_, Line(), Modem())
{
    window_.SetModem(reached == Reached::byModem);
    window_.SetModelloSX(modelloSX);
}

void BufferWindow::Open()
{
    port_->ForgetJournal();
    window_.show();
    BringToFront(window_);
}

void BufferWindow::Exec(const std::function<void()>& visit)
{
    port_->ForgetJournal();
    const ModalVisit<frmSX> visitor([&](frmSX& window) {
        visit();
        if (window.isVisible()) {
            QTest::qFail("the visit left the window open", __FILE__, __LINE__);
            window.hide();
        }
    });
    window_.exec();
}

frmConnessione& BufferWindow::Dialog()
{
    return SiteWindow::Part<frmConnessione>(window_, "frmConnessione");
}

void BufferWindow::Click(const char* button)
{
    QTest::mouseClick(&Button(button), Qt::LeftButton);
}

QString BufferWindow::ClickAndRead(const char* button)
{
    MessageProbe message(Qt::Key_Return);
    Click(button);
    if (message.icon() != QMessageBox::Warning || message.buttons() != QStringList({"OK"}))
        QTest::qFail("not the form of a message", __FILE__, __LINE__);
    return message.title() + ": " + message.text();
}

void BufferWindow::Press(Qt::Key key)
{
    QTest::keyClick(window_.focusWidget(), key);
}

void BufferWindow::Play(std::string_view script)
{
    corvrec::Play(script, *port_, script_, [this] {
        QTest::mouseClick(&SiteWindow::Part<QPushButton>(Dialog(), "cmdAnnulla"), Qt::LeftButton);
    });
}

void BufferWindow::ModemConnects()
{
    Play("AT&F<0D>: OK<0D><0A> | ATX3<0D>: OK<0D><0A> | ATDT0123<0D>: CONNECT");
    port_->SetCarrier(true);
}

void BufferWindow::ModemHangsUp()
{
    Play("+++: OK<0D><0A> | ATH<0D>: OK");
}

void BufferWindow::DeviceReplies(std::string_view status)
{
    port_->Answer("\x13", "\x13");
    port_->Answer("\x02", status);
    port_->Answer("\x13", "\x13");
}

QStringList BufferWindow::Journal()
{
    return port_->Journal().empty() ? QStringList() : Log().split(" | ");
}

QString BufferWindow::Log()
{
    return QString::fromStdString(Joined(port_->Journal()));
}

QString BufferWindow::Shows(const char* label)
{
    return Shown(SiteWindow::Part<QWidget>(window_, label));
}

QString BufferWindow::Focus()
{
    return window_.focusWidget()->objectName();
}

void BufferWindow::LogOff()
{
    // A session manager object cannot be created here, and no receiver uses it.
    char manager = 0;
    QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                              QGenericArgument("QSessionManager&", &manager));
}

} // namespace corvrec
