#include "tests/support/controls.h"
#include "tests/support/editor_window.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/vectors.h"
#include "ui/editor/file_chooser.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/texts.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QListView>
#include <QTest>

#include <fstream>
#include <functional>

namespace corvrec
{

namespace
{

QString ToText(const std::filesystem::path& path)
{
    return QString::fromStdString(path.string());
}

// The editor, and a folder to browse in next to the program's files.
class BrowseWindow : public EditorWindow
{
public:
    BrowseWindow()
        : EditorWindow(SettingsWith({}))
    {
        std::filesystem::create_directory(Folder());
        Add();
    }

    std::filesystem::path Folder() { return Settings().Directory() / "dati pabx"; }
    void Put(const char* file) { std::ofstream(Folder() / file) << "x"; }

    // Presses the button and acts in the chooser that it opens.
    void Browse(const char* button, const std::function<void(QFileDialog&)>& act)
    {
        const ModalVisit<QFileDialog> visit(act);
        Click(button);
    }

    // The folder in which the chooser opens for this text in the field.
    QString StartFolder(const QString& text)
    {
        QString folder;
        Field("txtDati").setText(text);
        Browse("cmdSfoglia1", [&folder](QFileDialog& chooser) {
            folder = chooser.directory().absolutePath();
            chooser.reject();
        });
        return folder;
    }
};

// Types the name and presses Enter.
void Choose(QFileDialog& chooser, const QString& file)
{
    auto& name = SiteWindow::Part<QLineEdit>(chooser, "fileNameEdit");
    name.selectAll();
    QTest::keyClicks(&name, file);
    QTest::keyClick(&name, Qt::Key_Return);
}

} // namespace

class file_chooser_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void folderOfAWindowsName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<std::optional<QString>>("folder");
        for (const QJsonValue vector : Vectors("browse_folder")) {
            const QString name = vector["in"].toString();
            const auto folder =
                vector["out"].isNull() ? std::nullopt : std::optional(vector["out"].toString());
            QTest::newRow(qPrintable("'" + name + "'")) << name << folder;
        }
    }

    static void folderOfAWindowsName()
    {
        QFETCH(QString, name);
        QFETCH(std::optional<QString>, folder);

        QVERIFY(FolderOf(name) == folder);
    }

    static void folderOfANameOfAnotherSystem_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<std::optional<QString>>("folder");
        using Folder = std::optional<QString>;
        QTest::newRow("file in a folder") << "/srv/dati/pabx.txt" << Folder("/srv/dati/");
        QTest::newRow("folder") << "/srv/dati/" << Folder("/srv/dati/");
        QTest::newRow("file in the root") << "/pabx.txt" << Folder();
        QTest::newRow("backslash in the name") << R"(/srv/a\b.txt)" << Folder("/srv/");
        QTest::newRow("slash in a Windows name") << "C:/dati/pabx.txt" << Folder();
    }

    static void folderOfANameOfAnotherSystem() { folderOfAWindowsName(); }

    static void startsInTheFolderOfTheField()
    {
        BrowseWindow window;
        window.Put("calls.txt");

        QCOMPARE(window.StartFolder(ToText(window.Folder() / "nuovo.txt")), ToText(window.Folder()));
    }

    static void startsInTheProgramsFolderWhenTheOtherHoldsNoFile()
    {
        BrowseWindow window;
        const QString inFolder = ToText(window.Folder() / "calls.txt");
        const QString own = ToText(window.Settings().Directory());

        QCOMPARE(window.StartFolder(inFolder), own);
        std::filesystem::create_directory(window.Folder() / "altra");
        QCOMPARE(window.StartFolder(inFolder), own);
        window.Put(".nascosto");

        QCOMPARE(window.StartFolder(inFolder), own);
    }

    static void startsInTheProgramsFolderWithoutAnother_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << "";
        QTest::newRow("name alone") << "pabx.txt";
        QTest::newRow("folder that is not there") << "/non/esiste/pabx.txt";
        QTest::newRow("folder of another system") << R"(Z:\dati\pabx.txt)";
    }

    static void startsInTheProgramsFolderWithoutAnother()
    {
        QFETCH(QString, text);
        BrowseWindow window;

        QCOMPARE(window.StartFolder(text), ToText(window.Settings().Directory()));
    }

    static void showsTheTwoFilters()
    {
        BrowseWindow window;
        QStringList shown;
        QString first;

        window.Browse("cmdSfoglia1", [&](QFileDialog& chooser) {
            auto& types = SiteWindow::Part<QComboBox>(chooser, "fileTypeCombo");
            first = types.currentText();
            for (int row = 0; row < types.count(); ++row)
                shown.append(types.itemText(row));
            chooser.reject();
        });

        QCOMPARE(shown, QStringList({"Testo (*.txt)", "Tutti i file (*.*)"}));
        QCOMPARE(first, "Testo (*.txt)");
    }

    static void opensAnyFile()
    {
        BrowseWindow window;
        QFileDialog::AcceptMode accept{};
        QFileDialog::FileMode mode{};

        window.Browse("cmdSfoglia1", [&](QFileDialog& chooser) {
            accept = chooser.acceptMode();
            mode = chooser.fileMode();
            chooser.reject();
        });

        QCOMPARE(accept, QFileDialog::AcceptOpen);
        QCOMPARE(mode, QFileDialog::AnyFile);
    }

    static void secondFilterListsNamesWithoutAPoint()
    {
        BrowseWindow window;
        window.Put("calls.txt");
        window.Put("SENZAPUNTO");
        window.Field("txtDati").setText(ToText(window.Folder() / "calls.txt"));
        bool listsIt = false;

        window.Browse("cmdSfoglia1", [&](QFileDialog& chooser) {
            PickRow(SiteWindow::Part<QComboBox>(chooser, "fileTypeCombo"), 1);
            const auto* const view = chooser.findChild<QListView*>("listView");
            listsIt = QTest::qWaitFor([view] { return view->model()->rowCount(view->rootIndex()) == 2; },
                                      kPatienceMs);
            chooser.reject();
        });

        QVERIFY(listsIt);
    }

    static void chosenPathFillsTheField_data()
    {
        QTest::addColumn<QString>("field");
        QTest::newRow("cmdSfoglia1") << "txtDati";
        QTest::newRow("cmdSfoglia2") << "txtDati2";
        QTest::newRow("cmdSfoglia3") << "txtStorico";
    }

    static void chosenPathFillsTheField()
    {
        QFETCH(QString, field);
        BrowseWindow window;
        window.Put("calls.txt");
        window.Field(qPrintable(field)).setText(ToText(window.Folder() / "x"));
        QStringList others{"txtDati", "txtDati2", "txtStorico", "txtLog"};
        others.removeOne(field);
        QStringList before;
        for (const QString& other : others)
            before.append(window.Shows(qPrintable(other)));

        window.Browse(QTest::currentDataTag(), [](QFileDialog& chooser) { Choose(chooser, "calls.txt"); });

        // Paths that start with "/" are not capitalised.
        QCOMPARE(window.Shows(qPrintable(field)), ToText(window.Folder() / "calls.txt"));
        QCOMPARE(window.Field(qPrintable(field)).cursorPosition(), 0);
        QVERIFY(!window.Field(qPrintable(field)).hasSelectedText());
        QStringList after;
        for (const QString& other : others)
            after.append(window.Shows(qPrintable(other)));
        QCOMPARE(after, before);
        QVERIFY(window.Editor().isVisible());
    }

    static void fileThatDoesNotExistYetIsAccepted()
    {
        BrowseWindow window;
        window.Put("calls.txt");
        window.Field("txtDati").setText(ToText(window.Folder() / "calls.txt"));

        window.Browse("cmdSfoglia1", [](QFileDialog& chooser) { Choose(chooser, "nuovo.txt"); });

        QCOMPARE(window.Shows("txtDati"), ToText(window.Folder() / "nuovo.txt"));
        QVERIFY(!std::filesystem::exists(window.Folder() / "nuovo.txt"));
    }

    static void cancellingKeepsTheText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("path") << R"(c:\dati\pabx.txt)";
        QTest::newRow("empty") << "";
    }

    static void cancellingKeepsTheText()
    {
        QFETCH(QString, text);
        BrowseWindow window;
        window.Field("txtDati2").setText(text);

        window.Browse("cmdSfoglia2", [](QFileDialog& chooser) { QTest::keyClick(&chooser, Qt::Key_Escape); });

        QCOMPARE(window.Shows("txtDati2"), text);
        QVERIFY(window.Editor().isVisible());
    }

    static void segmentsOfAWindowsPathAreCapitalised()
    {
        QCOMPARE(CapitaliseAfter(R"(c:\program files\rec\calls.txt)", '\\'),
                 R"(c:\Program files\Rec\Calls.txt)");
    }

    static void filesAreNeitherDeletedNorRenamed()
    {
        BrowseWindow window;
        window.Put("calls.txt");
        window.Field("txtDati").setText(ToText(window.Folder() / "calls.txt"));
        QStringList enabled;

        window.Browse("cmdSfoglia1", [&enabled](QFileDialog& chooser) {
            auto& files = SiteWindow::Part<QListView>(chooser, "listView");
            QVERIFY(QTest::qWaitFor([&files] { return files.model()->rowCount(files.rootIndex()) > 0; }));
            files.setCurrentIndex(files.model()->index(0, 0, files.rootIndex()));
            files.setFocus();
            QTest::keyClick(&files, Qt::Key_Delete);
            QTest::keyClick(&files, Qt::Key_F2);
            for (const char* const action :
                 {"qt_delete_action", "qt_rename_action", "qt_new_folder_action"}) {
                auto* const command = chooser.findChild<QAction*>(action);
                if (command != nullptr && command->isEnabled())
                    enabled.append(action);
            }
            chooser.reject();
        });

        QCOMPARE(enabled, QStringList());
        QVERIFY(std::filesystem::exists(window.Folder() / "calls.txt"));
    }

    // Reading a system file such as /proc/kmsg may block forever.
    static void filesAreNotReadForTheirType()
    {
        BrowseWindow window;
        std::ofstream(window.Folder() / "immagine") << "\x89PNG\r\n\x1A\n";
        window.Field("txtDati").setText(ToText(window.Folder() / "immagine"));
        QString type;

        window.Browse("cmdSfoglia1", [&type](QFileDialog& chooser) {
            chooser.selectNameFilter(chooser.nameFilters().constLast());
            auto& files = SiteWindow::Part<QListView>(chooser, "listView");
            QVERIFY(QTest::qWaitFor([&files] { return files.model()->rowCount(files.rootIndex()) > 0; }));
            const int typeColumn = 2;
            type = files.model()->index(0, typeColumn, files.rootIndex()).data().toString();
            chooser.reject();
        });

        QVERIFY(!type.isEmpty());
        QVERIFY2(!type.contains("PNG"), qPrintable(type));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::file_chooser_test> registered;

#include "file_chooser_test.moc"
