#include "tests/support/editor_window.h"

#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

namespace corvrec
{

EditorWindow::EditorWindow(std::string_view settings, std::optional<std::string_view> catalogue)
    : SiteWindow(settings, catalogue)
{
}

void EditorWindow::Add()
{
    Editor().InitFormDettagli();
    Editor().SetNuovo(true);
    Editor().EnableIdentity(true);
    Editor().SelectTab(0);
    Show();
}

void EditorWindow::AddRoma()
{
    Add();
    Set({"txtNomeSito: Roma", "txtCodice: RM", R"(txtDati: C:\Roma\Dati.txt)",
         R"(txtDati2: C:\Roma\Scambio.txt)", R"(txtStorico: C:\Roma\Storico.txt)"});
}

void EditorWindow::Open(int row)
{
    auto& grid = Part<QTableView>(List(), "dgrdGrigliaSiti");
    grid.setCurrentIndex(grid.model()->index(row, 0));
    Editor().InitFormDettagli();
    Editor().SetNuovo(false);
    Editor().EnableIdentity(false);
    Editor().SelectTab(0);
    Editor().MostraDati(List().SelectedSite());
    Show();
}

QString EditorWindow::Shows(const char* name)
{
    return Shown(At<QWidget>(name));
}

void EditorWindow::Turn(QWidget& control)
{
    auto& tabs = At<QTabWidget>("tabSetup");
    for (int page = 0; page < tabs.count(); ++page) {
        if (tabs.widget(page)->isAncestorOf(&control))
            tabs.setCurrentIndex(page);
    }
}

void EditorWindow::Pick(const char* list, int row)
{
    Turn(Choice(list));
    PickRow(Choice(list), row);
}

void EditorWindow::Click(const char* button)
{
    auto& control = At<QAbstractButton>(button);
    Turn(control);
    QTest::mouseClick(&control, Qt::LeftButton);
}

void EditorWindow::Choose(const QStringList& choices)
{
    for (const QString& choice : choices) {
        const QByteArray name = choice.section(": ", 0, 0).toLatin1();
        if (choice.contains(": "))
            Pick(name, Choice(name).findText(choice.section(": ", 1)));
        else
            Click(name);
    }
}

void EditorWindow::Retype(const char* field, const QString& text)
{
    Turn(Field(field));
    Field(field).setFocus();
    Field(field).selectAll();
    QTest::keyClick(&Field(field), Qt::Key_Delete);
    QTest::keyClicks(&Field(field), text);
}

void EditorWindow::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(Editor().focusWidget(), key, modifiers);
}

int EditorWindow::Tab()
{
    return At<QTabWidget>("tabSetup").currentIndex();
}

QString EditorWindow::Focus()
{
    const QWidget* const focused = Editor().focusWidget();
    return focused == nullptr ? QString() : focused->objectName();
}

void EditorWindow::Show()
{
    ShowInFrontOf(List(), Editor());
}

} // namespace corvrec
