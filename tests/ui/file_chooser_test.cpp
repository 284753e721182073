// The file choosers that "Sfoglia..." opens.
#include "tests/support/cases.h"
#include "tests/support/editor_window.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/editor/file_chooser.h"
#include "ui/widgets/paths.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QListView>
#include <QTest>

#include <fstream>

namespace corvrec
{

namespace
{

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
    QString InFolder(const char* file) { return ToText(Folder() / file); }
    void Put(const char* file) { std::ofstream(Folder() / file) << "\x89PNG\r\n\x1A\n"; }

    // The folder in which the chooser opens for this text in the field.
    QString StartFolder(const QString& text)
    {
        QString folder;
        Field("txtDati").setText(text);
        Visit<QFileDialog>("cmdSfoglia1",
                           [&folder](QFileDialog& chooser) { folder = chooser.directory().absolutePath(); });
        return QDir::toNativeSeparators(folder);
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

// The list of files, when it shows as many.
QListView& FilesOf(QFileDialog& chooser, int count)
{
    auto& files = SiteWindow::Part<QListView>(chooser, "listView");
    QTEST_ASSERT(
        QTest::qWaitFor([&] { return files.model()->rowCount(files.rootIndex()) == count; }, kPatienceMs));
    return files;
}

} // namespace

class file_chooser_test : public QObject
{
    Q_OBJECT

private slots:
    static void folderOfAName_data()
    {
        AddVectors("browse_folder");
        const auto add = [](const char* name, const QJsonValue& folder) {
            QTest::newRow(name) << QJsonObject{{"in", name}, {"out", folder}};
        };
        add("/srv/dati/pabx.txt", "/srv/dati/");
        add("/srv/dati/", "/srv/dati/");
        add("/pabx.txt", {});
        add(R"(/srv/a\b.txt)", "/srv/");
        add("C:/dati/pabx.txt", {});
    }

    static void folderOfAName()
    {
        QFETCH(const QJsonObject, given);

        const std::optional<QString> folder = FolderOf(given["in"].toString());

        QCOMPARE(folder ? QJsonValue(*folder) : QJsonValue(), given["out"]);
    }

    static void startsInTheFolderOfTheFieldIfItHoldsFiles()
    {
        BrowseWindow window;
        const QString own = ToText(window.Settings().Directory());
        for (const char* const text : {"", "pabx.txt", "/non/esiste/pabx.txt", R"(Z:\dati\pabx.txt)"})
            QCOMPARE(window.StartFolder(text), own);
        QCOMPARE(window.StartFolder(window.InFolder("calls.txt")), own);
        std::filesystem::create_directory(window.Folder() / "altra");
        window.Put(".nascosto");
        if (QFileInfo(window.InFolder(".nascosto")).isHidden()) // its name alone hides no file on Windows
            QCOMPARE(window.StartFolder(window.InFolder("calls.txt")), own);

        window.Put("calls.txt");

        QCOMPARE(window.StartFolder(window.InFolder("nuovo.txt")), ToText(window.Folder()));
    }

    static void opensAnyFileOfTwoTypes()
    {
        BrowseWindow window;
        window.Put("calls.txt");
        window.Put("SENZAPUNTO");
        window.Field("txtDati").setText(window.InFolder("calls.txt"));

        window.Visit<QFileDialog>("cmdSfoglia1", [](QFileDialog& chooser) {
            QCOMPARE(chooser.acceptMode(), QFileDialog::AcceptOpen);
            QCOMPARE(chooser.fileMode(), QFileDialog::AnyFile);
            auto& types = SiteWindow::Part<QComboBox>(chooser, "fileTypeCombo");
            QCOMPARE(types.count(), 2);
            QCOMPARE(types.currentText(), "Testo (*.txt)");
            FilesOf(chooser, 1);
            PickRow(types, 1);
            QCOMPARE(types.currentText(), "Tutti i file (*.*)");
            FilesOf(chooser, 2);
        });
    }

    static void chosenPathFillsTheField_data()
    {
        QTest::addColumn<QString>("field");
        QTest::newRow("cmdSfoglia1") << "txtDati";
        QTest::newRow("cmdSfoglia2") << "txtDati2";
        QTest::newRow("cmdSfoglia3") << "txtStorico";
    }

    // And no other. The file need not exist.
    static void chosenPathFillsTheField()
    {
        QFETCH(const QString, field);
        for (const char* const file : {"calls.txt", "nuovo.txt"}) {
            BrowseWindow window;
            window.Put("calls.txt");
            QStringList expected{"txtDati: a", "txtDati2: b", "txtStorico: c", "txtLog: d"};
            window.Set(expected);
            window.Set({field + ": " + window.InFolder("x")});

            window.Visit<QFileDialog>(QTest::currentDataTag(),
                                      [file](QFileDialog& chooser) { Choose(chooser, file); });

            for (QString& state : expected) {
                if (state.startsWith(field + ": "))
                    state = field + ": " + CapitaliseAfter(window.InFolder(file), u'\\');
            }
            window.ExpectShown(expected);
            QCOMPARE(window.Field(qPrintable(field)).cursorPosition(), 0);
            QVERIFY(!window.Field(qPrintable(field)).hasSelectedText());
            QVERIFY(window.Editor().isVisible());
            QVERIFY(!std::filesystem::exists(window.Folder() / "nuovo.txt"));
        }
    }

    static void cancellingKeepsTheText()
    {
        for (const char* const text : {R"(c:\dati\pabx.txt)", ""}) {
            BrowseWindow window;
            window.Field("txtDati2").setText(text);

            window.Visit<QFileDialog>(
                "cmdSfoglia2", [](QFileDialog& chooser) { QTest::keyClick(&chooser, Qt::Key_Escape); });

            QCOMPARE(window.Shows("txtDati2"), text);
            QVERIFY(window.Editor().isVisible());
        }
    }

    static void filesAreNeitherDeletedNorRenamed()
    {
        BrowseWindow window;
        window.Put("calls.txt");
        window.Field("txtDati").setText(window.InFolder("calls.txt"));

        window.Visit<QFileDialog>("cmdSfoglia1", [](QFileDialog& chooser) {
            QListView& files = FilesOf(chooser, 1);
            files.setCurrentIndex(files.model()->index(0, 0, files.rootIndex()));
            files.setFocus();
            QTest::keyClick(&files, Qt::Key_Delete);
            QTest::keyClick(&files, Qt::Key_F2);
            for (const char* const action :
                 {"qt_delete_action", "qt_rename_action", "qt_new_folder_action"}) {
                const auto* const command = chooser.findChild<QAction*>(action);
                QVERIFY2(command == nullptr || !command->isEnabled(), action);
            }
        });

        QVERIFY(std::filesystem::exists(window.Folder() / "calls.txt"));
    }

    // Reading a system file such as /proc/kmsg may block forever.
    static void filesAreNotReadForTheirType()
    {
        BrowseWindow window;
        window.Put("immagine");
        window.Field("txtDati").setText(window.InFolder("immagine"));

        window.Visit<QFileDialog>("cmdSfoglia1", [](QFileDialog& chooser) {
            chooser.selectNameFilter(chooser.nameFilters().constLast());
            const QListView& files = FilesOf(chooser, 1);
            const int typeColumn = 2;
            const QString type = files.model()->index(0, typeColumn, files.rootIndex()).data().toString();
            QVERIFY(!type.isEmpty());
            QVERIFY2(!type.contains("PNG"), qPrintable(type));
        });
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::file_chooser_test> registered;

#include "file_chooser_test.moc"
