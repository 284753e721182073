// Names, codes, paths and numbers that nobody types, entered into every field of the editor and its dialogs.
// The settings file must be the one that the core writes for what the fields held.
#include "core/file/code_page.h"
#include "core/site/new_site.h"
#include "core/site/site_keys.h"
#include "core/site/site_list.h"
#include "tests/support/listed_sites.h"
#include "tests/support/message_log.h"
#include "tests/support/modal_visit.h"
#include "tests/support/odd_texts.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample.h"
#include "tests/support/site_window.h"
#include "tests/support/text_entry.h"
#include "tests/ui/watched_file.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/widgets/paths.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

namespace corvrec
{

namespace
{

constexpr std::uint64_t kSeed = 20261121;
constexpr std::size_t kTexts = 10'000; // each field gets all of them
constexpr std::size_t kCasesOfARow = 100;
constexpr std::size_t kCasesOfAFile = 20; // the remains of odd codes would make the file grow forever
constexpr std::size_t kCaseWithANewList = 13;
constexpr qsizetype kLongestCode = 480; // with two other sites in the list

constexpr std::string_view kBefore = "; Registratore di Bologna\r\n"
                                     "Orfana=prima di ogni sezione\r\n"
                                     "[General]\r\n"
                                     "Com=COM2\r\n"
                                     "Log=Vecchio.log\r\n"
                                     "\r\n"
                                     "[Siti]\r\n"
                                     "; codice=nome\r\n"
                                     "UNO=Sede di Forl\xEC\r\n"
                                     "DUE=\"Magazzino\"\r\n"
                                     "\r\n"
                                     "[UNO]\r\n"
                                     "SitoAbilitato=1\r\n"
                                     "Ricorrenza=-2\r\n"
                                     "Dati=c:\\dati\\uno.txt\r\n"
                                     "Estranea = resta \r\n"
                                     "; nota\r\n"
                                     "[DUE]\r\n"
                                     "SitoAbilitato=0\r\n"
                                     "Ricorrenza=0\r\n"
                                     "\r\n"
                                     "[Altro programma]\r\n"
                                     "Chiave = valore \r\n"
                                     "riga senza segno\r\n";

// The sites that no case edits, and the foreign lines.
constexpr std::string_view kOtherSites = kBefore.substr(kBefore.find("[UNO]"));

// The part of the text that can be the name of a key and of a section. Filtering a whole text gives the same
// result as filtering each typed key.
QString Name(QString text)
{
    text.removeIf([](QChar c) { return QString("=[]").contains(c) || c.category() == QChar::Other_Control; });
    qsizetype first = 0;
    while (first < text.size() && (text[first] == ' ' || text[first] == ';')) {
        if (text[first] == ';')
            text.remove(first, 1);
        else
            ++first;
    }
    return text;
}

// The text after a round trip through the file, for texts that can be a name.
QString Stored(const QString& text)
{
    return QString::fromStdString(Utf8FromCp1252(Cp1252FromUtf8(text.toStdString())));
}

enum class Takes { anyText, digitsWhenTyped, names };

// What the field holds after the text was entered.
QString Held(const QString& text, Entry way, Takes takes)
{
    QString held = way == Entry::keys ? Typeable(text) : text;
    held.removeIf([](QChar c) { return c == '\r' || c == '\n' || c.isNull(); });
    if (takes == Takes::names)
        return Name(held);
    if (takes == Takes::digitsWhenTyped && (way == Entry::keys || way == Entry::inputMethod))
        held.removeIf([](QChar c) { return c < '0' || c > '9'; });
    return held;
}

template <class Control>
Control& Part(QWidget& window, const char* name)
{
    return SiteWindow::Part<Control>(window, name);
}

void Click(QWidget& window, const char* button)
{
    QTest::mouseClick(&Part<QAbstractButton>(window, button), Qt::LeftButton);
}

void Fail(const QString& what)
{
    QTest::qFail(qPrintable(what), __FILE__, __LINE__);
}

// Chooses a text for each field of a case. Fields differ within a case, each field's text differs from case
// to case, and over all cases each field gets every text.
class Texts
{
public:
    Texts()
    {
        Chance chance(kSeed);
        while (texts_.size() < kTexts)
            texts_.push_back(OddText(chance));
    }

    void Turn(std::size_t turn) { turn_ = turn; }

    // field: the field's number.
    const QString& For(std::size_t field) const { return texts_[(turn_ + field * 577) % kTexts]; }
    Entry WayFor(std::size_t field) const { return kEntries[(turn_ + turn_ / 4 + field) % kEntries.size()]; }
    // True for one in `oneIn` groups of sixteen turns; within a group, every field is used with every way of
    // entry.
    bool Chooses(std::size_t oneIn) const { return turn_ / 16 % oneIn == 0; }

private:
    std::vector<QString> texts_;
    std::size_t turn_ = 0;
};

// The program over one file, and the core over another, which a second model of the profile functions
// watches.
class Editing
{
public:
    // foundAgain counts the fields that showed the stored text when the site was opened again.
    Editing(const Texts& texts, int& foundAgain)
        : texts_(texts)
        , foundAgain_(foundAgain)
    {
    }

    bool AddSite(); // false: refused, because such a site exists
    void LookAtIt();
    void RemoveIt();
    void CompareWithANewList();

private:
    std::string Fill(QWidget& form, const char* field, Takes takes = Takes::anyText);
    std::string FillAtLeastOneLetter(QWidget& form, const char* field, Takes takes = Takes::anyText);
    void FillEditor(frmDettaglio& form);
    void FillIdentity(frmDettaglio& form);
    void FillModem(frmModem& form);
    Alert FillAlert(frmFileAvanzate& form, const char* box, const char* field);
    FlowCharacter FillFlowCharacter(frmDettaglio& form, const char* box, const char* field);
    void FillSchedule(frmDettaglio& form);
    bool IsTaken();
    bool Collides();
    void CompareFile();
    void CompareField(QWidget& form, const char* field, const std::optional<std::string>& loaded);

    const Texts& texts_;
    int& foundAgain_;
    MessageLog boxes_;
    SiteWindow window_{kBefore};
    SettingsFile settings_{kBefore};
    WatchedFile expected_{*settings_, kBefore, [this] { return Cp1252FromUtf8(code_.toStdString()); }, Fail};
    QString name_;
    QString code_;
    SiteRecord site_;
    std::size_t field_ = 0;
};

std::string Editing::Fill(QWidget& form, const char* field, Takes takes)
{
    const QString& text = texts_.For(field_);
    const Entry way = texts_.WayFor(field_);
    ++field_;
    auto& control = Part<QLineEdit>(form, field);
    Enter(control, text, way);
    if (control.text() != Held(text, way, takes))
        Fail(field);
    return control.text().toStdString();
}

// Empty fields are refused, which other tests check.
std::string Editing::FillAtLeastOneLetter(QWidget& form, const char* field, Takes takes)
{
    std::string text = Fill(form, field, takes);
    if (text.find_first_not_of(' ') != std::string::npos)
        return text;
    QTest::keyClick(&Part<QLineEdit>(form, field), Qt::Key_End);
    QTest::keyClick(&Part<QLineEdit>(form, field), Qt::Key_7);
    return text + '7';
}

void Editing::FillEditor(frmDettaglio& form)
{
    site_ = NewSite(SiteWindow::kNow);
    site_.enabled = true;
    site_.handshake = handshake::software;
    site_.modemModel = "Generico";
    FillIdentity(form);
    QTest::keyClick(&Part<QComboBox>(form, "cboTipoConn"), Qt::Key_End); // can use a modem
    Part<QRadioButton>(form, "optRemoto").click();
    {
        const ModalVisit<frmModem> modem([this](frmModem& dialog) { FillModem(dialog); });
        Click(form, "btnModem");
    }
    QApplication::setActiveWindow(&form);
    site_.device = DeviceRowOf("COM"); // can use flow characters
    QTest::keyClick(&Part<QComboBox>(form, "cboTipoConn"), Qt::Key_Home);
    QTest::keyClick(&Part<QComboBox>(form, "cboHandS"), Qt::Key_Home);
    QTest::keyClick(&Part<QComboBox>(form, "cboHandS"), Qt::Key_Down);
    site_.xon = FillFlowCharacter(form, "chkXon", "txtXon");
    site_.xoff = FillFlowCharacter(form, "chkXoff", "txtXoff");

    form.SelectTab(1);
    FillSchedule(form);

    form.SelectTab(2);
    site_.dataFile = FillAtLeastOneLetter(form, "txtDati");
    site_.exchangeFile = FillAtLeastOneLetter(form, "txtDati2");
    site_.historyFile = FillAtLeastOneLetter(form, "txtStorico");
    site_.logFile = FillAtLeastOneLetter(form, "txtLog");
    {
        const ModalVisit<frmFileAvanzate> alerts([this](frmFileAvanzate& dialog) {
            site_.fileAlert = FillAlert(dialog, "chkFile", "txtFile");
            site_.diskAlert = FillAlert(dialog, "chkSpazio", "txtSpazio");
            Click(dialog, "OK");
        });
        Click(form, "cmdFileAvanzate");
    }
    QApplication::setActiveWindow(&form);
}

void Editing::FillIdentity(frmDettaglio& form)
{
    const std::string name = FillAtLeastOneLetter(form, "txtNomeSito");
    const std::string code = FillAtLeastOneLetter(form, "txtCodice", Takes::names);
    Part<QWidget>(form, "chkAbilitato").setFocus();
    name_ = TrimBlanks(QString::fromStdString(name));
    code_ = UpperCase(TrimBlanks(QString::fromStdString(code)));
}

void Editing::FillModem(frmModem& form)
{
    site_.dial = DialNumber{.tone = true, .number = FillAtLeastOneLetter(form, "txtTelefono")};
    // The number of attempts must start with a digit.
    site_.importAttempts = "1" + Fill(form, "txtTentImpor", Takes::digitsWhenTyped);
    QTest::keyClick(&Part<QLineEdit>(form, "txtTentImpor"), Qt::Key_Home);
    QTest::keyClicks(&Part<QLineEdit>(form, "txtTentImpor"), "1");
    site_.initString = FillAtLeastOneLetter(form, "txtStringaInit");
    site_.resetString = FillAtLeastOneLetter(form, "txtStringaReset");
    Click(form, "OK");
}

Alert Editing::FillAlert(frmFileAvanzate& form, const char* box, const char* field)
{
    Part<QCheckBox>(form, box).setChecked(true);
    return {.on = true, .limit = FillAtLeastOneLetter(form, field, Takes::digitsWhenTyped)};
}

FlowCharacter Editing::FillFlowCharacter(frmDettaglio& form, const char* box, const char* field)
{
    const bool isXon = qstrcmp(field, "txtXon") == 0;
    const bool isControl = !texts_.Chooses(isXon ? 3 : 5);
    Part<QCheckBox>(form, box).setChecked(isControl);
    const std::string text = Fill(form, field);
    Part<QWidget>(form, "cboHandS").setFocus();
    if (text.empty()) // filled in on leaving the field
        return {.control = isControl, .text = isXon ? "Q" : "S"};
    return {.control = isControl, .text = text};
}

// An hourly interval accepts only times. Any other interval accepts any text and uses its leading number:
// none when it starts with a letter; otherwise a number is typed before it.
void Editing::FillSchedule(frmDettaglio& form)
{
    static const QRegularExpression kTime("^[0-9_]{2}:[0-9_]{2}$");
    const bool isHourly = texts_.Chooses(4);
    QTest::keyClick(&Part<QComboBox>(form, "cboRicorrenza"), Qt::Key_Home);
    for (int row = 0; row < (isHourly ? 1 : 2); ++row)
        QTest::keyClick(&Part<QComboBox>(form, "cboRicorrenza"), Qt::Key_Down);
    site_.schedule = isHourly ? ScheduleKind::hourly : ScheduleKind::daily;

    const auto fillTime = [&](const char* name, const char* digits, const char* time) {
        auto& field = Part<QLineEdit>(form, name);
        Enter(field, texts_.For(field_), texts_.WayFor(field_));
        ++field_;
        if (!kTime.match(field.text()).hasMatch())
            Fail(field.text());
        field.selectAll();
        QTest::keyClicks(&field, digits);
        return std::string(time);
    };
    site_.startTime = fillTime("mskOrario", "0830", "08:30");
    if (isHourly) {
        site_.interval = fillTime("mskValore", "0130", "01:30");
        return;
    }
    site_.interval = Fill(form, "mskValore");
    if (const QString text = QString::fromStdString(*site_.interval); !text.isEmpty() && text[0].isLetter())
        return;
    QTest::keyClick(&Part<QLineEdit>(form, "mskValore"), Qt::Key_Home);
    QTest::keyClicks(&Part<QLineEdit>(form, "mskValore"), "3 giorni");
    site_.interval->insert(0, "3 giorni");
}

bool Editing::IsTaken()
{
    const auto same = [](const std::string& listed, const QString& text) {
        return UpperCase(QString::fromStdString(listed)) == UpperCase(Stored(text));
    };
    return code_ == "GENERAL" || code_ == "SITI" ||
           std::ranges::any_of(window_.List().Sites(), [&](const SiteRow& row) {
               return same(row.name, name_) || same(row.code, code_);
           });
}

// Whether a listed site uses the same file for the same purpose.
bool Editing::Collides()
{
    const SiteFiles files{*site_.dataFile, *site_.exchangeFile, *site_.historyFile};
    return FindCollision(expected_, window_.List().Sites(), files, code_.toStdString()).has_value();
}

bool Editing::AddSite()
{
    field_ = 0;
    bool taken = false;
    bool collides = false;
    const qsizetype boxes = boxes_.Texts().size();
    {
        const ModalVisit<frmDettaglio> editor([&, this](frmDettaglio& form) {
            FillEditor(form);
            QCOMPARE(boxes_.Texts().size(), boxes);
            taken = IsTaken();
            collides = Collides();
            Click(form, "OK");
            if (form.isVisible())
                QTest::keyClick(&form, Qt::Key_Escape);
        });
        Click(window_.List(), "cmdAggiungi");
    }
    // No other check exists: without a box, the site is saved.
    if (boxes_.Texts().size() != boxes + (taken || collides ? 1 : 0))
        Fail("unexpected or missing message box");
    const bool saved = !window_.Editor().Cancel();
    if (saved == taken)
        Fail("saved although such a site exists, or not saved");
    if (saved)
        SaveSite(expected_, code_.toStdString(), name_.toStdString(), site_, SiteWindow::kNow);
    CompareFile();
    return saved;
}

// Compares the whole file, and explicitly the parts that must never change.
void Editing::CompareFile()
{
    const QByteArray bytes = window_.File();
    QCOMPARE(bytes.split('\n'), QByteArray::fromStdString(settings_.Bytes()).split('\n'));
    QCOMPARE(bytes, QByteArray::fromStdString(expected_.Expected().Bytes()));
    QVERIFY(bytes.contains(QByteArray(kOtherSites.data(), kOtherSites.size())));
}

void Editing::CompareField(QWidget& form, const char* field, const std::optional<std::string>& loaded)
{
    if (!loaded) // not found again, or treated as missing
        return;
    ++foundAgain_;
    QCOMPARE(Part<QLineEdit>(form, field).text(), QString::fromStdString(*loaded));
}

void Editing::LookAtIt()
{
    QCOMPARE(ListedSites(*window_.Settings()), ListedSites(expected_.Expected())); // as at the next start
    // A code that is too long for the list is written, but not read again.
    if (code_.size() < kLongestCode)
        QCOMPARE(ListedSites(window_.List()), ListedSites(expected_.Expected()));
    const QByteArray before = window_.File();
    const qsizetype boxes = boxes_.Texts().size();
    {
        const ModalVisit<frmDettaglio> editor([this](frmDettaglio& form) {
            SiteRecord loaded;
            LoadSite(expected_, code_.toStdString(), loaded);
            for (auto* const path :
                 {&loaded.dataFile, &loaded.exchangeFile, &loaded.historyFile, &loaded.logFile}) {
                if (*path && !(*path)->starts_with('/'))
                    *path = CapitaliseAfter(QString::fromStdString(**path), '\\').toStdString();
            }
            CompareField(form, "txtNomeSito", window_.List().SelectedName());
            CompareField(form, "txtCodice", Stored(code_).toStdString());
            CompareField(form, "txtDati", loaded.dataFile);
            CompareField(form, "txtDati2", loaded.exchangeFile);
            CompareField(form, "txtStorico", loaded.historyFile);
            CompareField(form, "txtLog", loaded.logFile);
            CompareField(form, "txtStringaInit", loaded.initString);
            CompareField(form, "txtStringaReset", loaded.resetString);
            CompareField(form, "txtTelefono", loaded.dial.value_or(DialNumber()).number);
            CompareField(form, "txtTentImpor", loaded.importAttempts);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        Click(window_.List(), "cmdProperties");
    }
    QCOMPARE(window_.File(), before);
    QCOMPARE(boxes_.Texts().size(), boxes);
}

void Editing::RemoveIt()
{
    const qsizetype boxes = boxes_.Texts().size();

    Click(window_.List(), "cmdRimuovi");

    QCOMPARE(boxes_.Texts().size(), boxes + 1);
    RemoveSite(expected_, code_.toStdString());
    CompareFile();
}

// Compares with the list after the next start.
void Editing::CompareWithANewList()
{
    SiteWindow next(settings_.Bytes());
    QCOMPARE(ListedSites(next.List()), ListedSites(expected_.Expected()));
}

// The number of texts for each field, which CORVREC_ODD_NAME_CASES in the environment overrides.
std::size_t Cases()
{
    bool given = false;
    const int cases = qEnvironmentVariableIntValue("CORVREC_ODD_NAME_CASES", &given);
    return given ? static_cast<std::size_t>(cases) : SampleOrAll<std::size_t>(300, 100, kTexts);
}

} // namespace

class odd_names_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        qInfo("%zu of %zu cases, seed %llu", Cases(), kTexts, static_cast<unsigned long long>(kSeed));
    }

    // Adds a site with odd texts in its fields, and checks what is written, what is shown when it is opened
    // again, and what is left after it is removed.
    static void everyFieldTakesEveryText_data()
    {
        QTest::addColumn<std::size_t>("first");
        const std::size_t all = Cases();
        for (std::size_t first = 0; first < all; first += kCasesOfARow)
            QTest::addRow("from %zu", first) << first;
    }

    static void everyFieldTakesEveryText()
    {
        QFETCH(std::size_t, first);
        Texts texts;
        int foundAgain = 0;
        std::unique_ptr<Editing> editing;
        for (std::size_t turn = first; turn < first + kCasesOfARow; ++turn) {
            if (turn % kCasesOfAFile == 0)
                editing = std::make_unique<Editing>(texts, foundAgain);
            texts.Turn(turn);
            if (editing->AddSite()) {
                editing->LookAtIt();
                if (turn % kCasesOfAFile == kCaseWithANewList)
                    editing->CompareWithANewList();
                editing->RemoveIt();
            }
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QString("case %1").arg(turn)));
        }
        // The profile functions can find most of the codes again.
        QVERIFY2(foundAgain > static_cast<int>(kCasesOfARow) * 4, qPrintable(QString::number(foundAgain)));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::odd_names_test> registered;
#include "odd_names_test.moc"
