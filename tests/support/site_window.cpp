#include "tests/support/site_window.h"

#include "tests/support/activation.h"
#include "ui/editor/environment.h"

#include <QTableView>
#include <QTest>

#include <fstream>
#include <stdexcept>

namespace corvrec
{

SiteWindow::SiteWindow(std::string_view settings, std::optional<std::string_view> catalogue,
                       const OpenFile& open)
    : settings_(settings)
    , profile_(open(settings_.Path()))
{
    clock_.SetNow(kNow);
    if (catalogue)
        std::ofstream(settings_.Directory() / "modem.dat", std::ios::binary) << *catalogue;
    list_ =
        std::make_unique<frmSiti>(Environment{settings_.Directory(), *profile_, clock_, events_, makePort_});
    if (!list_->Load())
        throw std::logic_error("the settings of this test name no port");
    list_->LoadEditor();
    list_->RefreshGrid();
    list_->show();
    BringToFront(*list_);
}

SiteWindow::~SiteWindow() = default;

frmDettaglio& SiteWindow::Editor()
{
    auto* const editor = list_->findChild<frmDettaglio*>();
    if (editor == nullptr)
        throw std::logic_error("the editor is not loaded");
    return *editor;
}

QStringList SiteWindow::Rows()
{
    const auto& model = *Part<QTableView>(*list_, "dgrdGrigliaSiti").model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.index(row, column).data().toString());
        rows.append(cells.join(" | "));
    }
    return rows;
}

QByteArray SiteWindow::File() const
{
    return QByteArray::fromStdString(settings_.Bytes());
}

QString ToText(const std::filesystem::path& path)
{
    return QString::fromStdString(std::filesystem::path(path).make_preferred().string());
}

std::string SettingsWith(std::initializer_list<std::string_view> codes)
{
    std::string bytes = "[Siti]\r\n";
    for (const std::string_view code : codes)
        bytes.append(code).append("=Sito ").append(code).append("\r\n");
    bytes += "[General]\r\nCom=COM2\r\nLog=Corvrec.log\r\n";
    for (const std::string_view code : codes) {
        bytes.append("[").append(code).append(
            "]\r\nSitoAbilitato=1\r\nDispositivo=COM\r\nMODEM=0\r\nRicorrenza=-1\r\n");
        bytes.append("Ogni= 3600\r\nOra=08:30 21/11/2026\r\n");
        bytes.append("Dati=C:\\Dati\\").append(code).append(".txt\r\n");
        bytes.append("Dati2=C:\\Scambio\\").append(code).append(".txt\r\n");
        bytes.append("Storico=C:\\Storico\\").append(code).append(".txt\r\n");
    }
    return bytes;
}

} // namespace corvrec
