#include "tests/support/buffer_session.h"

#include "tests/support/buffer_window.h"
#include "tests/support/modal_visit.h"
#include "tests/support/site_window.h"
#include "ui/editor/environment.h"
#include "ui/editor/frmDettaglio.h"
#include "ui/widgets/mask_edit.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include <string>

namespace corvrec
{

namespace
{

std::string Settings(std::string_view lines)
{
    return "[General]\r\nCom=COM2\r\n"
           "[Siti]\r\nA=Sito A\r\n"
           "[A]\r\nBaud=9600\r\nBitDati=8\r\nParita=N\r\nStop=1\r\nHandshake=NONE\r\n"
           "Ricorrenza=-1\r\nOgni= 3600\r\nOra=08:30 21/11/2026\r\n" +
           std::string(lines);
}

} // namespace

BufferSession::BufferSession(Clock& clock, EventPump& events, std::string_view lines)
    : settings_(Settings(lines))
    , list_(Environment{settings_.Directory(), *settings_, clock, events, makePort_})
{
    QVERIFY(list_.Load());
    list_.LoadEditor();
    list_.RefreshGrid();
    list_.show();
}

void BufferSession::Visit(const std::function<void(frmSX&)>& visit)
{
    const ModalVisit<frmSX> inBuffer([&visit](frmSX& window) {
        visit(window);
        if (window.isVisible())
            Click(window, "cmdChiudi");
    });
    const ModalVisit<frmDettaglio> inEditor([](frmDettaglio& editor) {
        Click(editor, "cmdSX");
        Click(editor, "Annulla");
    });
    Click(list_, "cmdProperties");
}

void Click(QWidget& window, const char* button)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(window, button), Qt::LeftButton);
}

void Type(frmSX& window, const char* field, int place, const char* digits)
{
    auto& edit = SiteWindow::Part<MaskEdit>(window, field);
    edit.setSelection(place, static_cast<int>(qstrlen(digits)));
    edit.setSelText(digits);
}

void SetClock(frmSX& window)
{
    Type(window, "mskOra", 0, "09");
    Type(window, "mskOra", 3, "05");
    Type(window, "mskData", 0, "31");
    Type(window, "mskData", 3, "12");
    Type(window, "mskData", 6, "26");
    Click(window, "cmdImpostaDataOra");
}

void UseAndLeave(frmSX& window)
{
    for (const char* const button : {"cmdStato", "cmdImpostaDataOra"}) {
        if (window.isVisible())
            Click(window, button);
    }
    if (window.isVisible()) {
        QCOMPARE(EnabledButtons(window), (QStringList{"cmdStato", "cmdImpostaDataOra", "cmdChiudi"}));
        QCOMPARE(BusyWindows(window), QStringList());
    }
}

frmSX* OpenWindow()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const buffer = qobject_cast<frmSX*>(window); buffer != nullptr && buffer->isVisible())
            return buffer;
    }
    return nullptr;
}

frmConnessione& ModemDialog(frmSX& window)
{
    return SiteWindow::Part<frmConnessione>(window, "frmConnessione");
}

} // namespace corvrec
