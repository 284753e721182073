// Names, codes, paths and numbers that nobody types, entered into every field of the editor and its dialogs,
// and compared with a second model of the profile functions.
#include "core/device/modComExtension.h"
#include "core/device/modem_session.h"
#include "tests/support/buffer_window.h"
#include "tests/support/fake_port.h"
#include "tests/support/listed_sites.h"
#include "tests/support/modal_visit.h"
#include "tests/support/odd_texts.h"
#include "tests/support/page_text.h"
#include "tests/support/platform_noise.h"
#include "tests/support/reference_profile.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample.h"
#include "tests/support/scripted_pump.h"
#include "tests/support/site_window.h"
#include "tests/support/text_entry.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/editor/frmModem.h"
#include "ui/widgets/texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <utility>
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
constexpr std::string_view kOtherSites = "[UNO]\r\n"
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

QString WithoutLineBreaks(QString text)
{
    return text.removeIf([](QChar c) { return c == '\r' || c == '\n' || c.isNull(); });
}

// Without the bytes that are control characters on a line with 7 data bits.
std::string WithoutControls(std::string bytes)
{
    std::erase_if(bytes, [](char byte) { return (byte & 0x60) == 0 || (byte & 0x7F) == 0x7F; });
    return bytes;
}

QString WithoutBlanksAround(QString text)
{
    while (text.startsWith(' '))
        text.remove(0, 1);
    while (text.endsWith(' '))
        text.chop(1);
    return text;
}

QChar Upper(QChar character)
{
    return InPage(character.toUpper()) ? character.toUpper() : character;
}

QString UpperLetters(QString text)
{
    std::ranges::transform(text, text.begin(), Upper);
    return text;
}

// Capitalises the letter after each backslash.
QString ShownPath(const QString& stored)
{
    QString path = stored;
    for (qsizetype i = 1; !path.startsWith('/') && i < path.size(); ++i) {
        if (path[i - 1] == '\\')
            path[i] = Upper(path[i]);
    }
    return path;
}

QString Digits(QString text)
{
    return text.removeIf([](QChar c) { return c < '0' || c > '9'; });
}

std::string Command(const std::string& text)
{
    const bool begins = QString::fromStdString(text.substr(0, 2)).compare("AT", Qt::CaseInsensitive) == 0;
    return begins ? text : "AT" + text;
}

std::string Signed(int number)
{
    return (number < 0 ? "" : " ") + std::to_string(number);
}

// Answers every message box with its default button and keeps the texts.
class Boxes : public QObject
{
public:
    Boxes() { qApp->installEventFilter(this); }

    QStringList Take() { return std::exchange(texts_, {}); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* const box = qobject_cast<QMessageBox*>(watched);
        if (box != nullptr && event->type() == QEvent::Show) {
            texts_.append(box->text());
            QMetaObject::invokeMethod(
                box, [box] { QTest::keyClick(box, Qt::Key_Return); }, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    QStringList texts_;
};

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

// The text after a round trip through the file, for texts that can be a name or a value.
QString Stored(const QString& text)
{
    return PageText(PageBytes(text));
}

// The site's name as a new file returns it.
QString Listed(const QString& name)
{
    ReferenceProfile file("");
    file.Write("Siti", "X", PageBytes(name));
    constexpr std::size_t readSize = 500;
    const std::string read = file.Read("Siti", "X", readSize).value_or("-CaVacca-");
    return read == "-CaVacca-" ? "0" : PageText(read);
}

enum class Takes { anyText, digitsWhenTyped, names };

// What the field holds after the text was entered.
QString Held(const QString& text, Entry way, Takes takes)
{
    const QString arrived = way == Entry::keys ? Typeable(text) : WithoutLineBreaks(text);
    if (takes == Takes::names)
        return Name(arrived);
    const bool isFiltered =
        takes == Takes::digitsWhenTyped && (way == Entry::keys || way == Entry::inputMethod);
    return isFiltered ? Digits(arrived) : arrived;
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
    // True in one of oneIn groups of sixteen turns; in each group, every field is used with every way of
    // entry.
    bool Chooses(std::size_t oneIn) const { return turn_ / 16 % oneIn == 0; }

private:
    std::vector<QString> texts_;
    std::size_t turn_ = 0;
};

// The program over one file, and the expected contents of both.
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
    QString Fill(QWidget& form, const char* field, Takes takes = Takes::anyText);
    void FillAtLeastOneLetter(QWidget& form, const char* field, Takes takes = Takes::anyText);
    void FillEditor(frmDettaglio& form);
    void FillIdentity(frmDettaglio& form);
    void FillModem(frmModem& form);
    void FillAlerts(frmFileAvanzate& form);
    void FillFlowCharacter(frmDettaglio& form, const char* box, const char* field);
    void FillSchedule(frmDettaglio& form);
    bool Collides();
    void CompareFile();
    bool IsTaken();
    void WriteSite();
    std::string Flow(const char* box, const char* field) const;
    void CompareField(frmDettaglio& form, const char* field, const char* key,
                      QString (*shown)(const QString&));
    std::string Code() const { return PageBytes(held_.at("txtCodice")); }

    const Texts& texts_;
    int& foundAgain_;
    Boxes boxes_;
    SiteWindow window_{kBefore};
    ReferenceProfile profile_{kBefore};
    std::map<std::string, QString> held_; // by field name
    std::map<std::string, bool> ticked_;
    std::size_t field_ = 0;
    bool hourly_ = false;
    std::string interval_; // the saved form
};

QString Editing::Fill(QWidget& form, const char* field, Takes takes)
{
    const QString& text = texts_.For(field_);
    const Entry way = texts_.WayFor(field_);
    ++field_;
    Enter(Part<QLineEdit>(form, field), text, way);
    held_[field] = Held(text, way, takes);
    if (Part<QLineEdit>(form, field).text() != held_[field])
        QTest::qFail(field, __FILE__, __LINE__);
    return held_[field];
}

// Empty fields are refused, which other tests check.
void Editing::FillAtLeastOneLetter(QWidget& form, const char* field, Takes takes)
{
    if (!WithoutBlanksAround(Fill(form, field, takes)).isEmpty())
        return;
    QTest::keyClick(&Part<QLineEdit>(form, field), Qt::Key_End);
    QTest::keyClick(&Part<QLineEdit>(form, field), Qt::Key_7);
    held_[field] += '7';
}

void Editing::FillEditor(frmDettaglio& form)
{
    FillIdentity(form);
    QTest::keyClick(&Part<QComboBox>(form, "cboTipoConn"), Qt::Key_End); // can use a modem
    Part<QRadioButton>(form, "optRemoto").click();
    {
        const ModalVisit<frmModem> modem([this](frmModem& dialog) { FillModem(dialog); });
        Click(form, "btnModem");
    }
    QApplication::setActiveWindow(&form);
    QTest::keyClick(&Part<QComboBox>(form, "cboTipoConn"), Qt::Key_Home); // can use flow characters
    QTest::keyClick(&Part<QComboBox>(form, "cboHandS"), Qt::Key_Home);
    QTest::keyClick(&Part<QComboBox>(form, "cboHandS"), Qt::Key_Down);
    FillFlowCharacter(form, "chkXon", "txtXon");
    FillFlowCharacter(form, "chkXoff", "txtXoff");

    form.SelectTab(1);
    FillSchedule(form);

    form.SelectTab(2);
    for (const char* const field : {"txtDati", "txtDati2", "txtStorico", "txtLog"})
        FillAtLeastOneLetter(form, field);
    {
        const ModalVisit<frmFileAvanzate> alerts([this](frmFileAvanzate& dialog) { FillAlerts(dialog); });
        Click(form, "cmdFileAvanzate");
    }
    QApplication::setActiveWindow(&form);
}

void Editing::FillIdentity(frmDettaglio& form)
{
    FillAtLeastOneLetter(form, "txtNomeSito");
    FillAtLeastOneLetter(form, "txtCodice", Takes::names);
    Part<QWidget>(form, "chkAbilitato").setFocus();
    held_["txtNomeSito"] = WithoutBlanksAround(held_["txtNomeSito"]);
    held_["txtCodice"] = UpperLetters(WithoutBlanksAround(held_["txtCodice"]));
}

void Editing::FillModem(frmModem& form)
{
    FillAtLeastOneLetter(form, "txtTelefono");
    // The number of attempts must start with a digit.
    Fill(form, "txtTentImpor", Takes::digitsWhenTyped);
    QTest::keyClick(&Part<QLineEdit>(form, "txtTentImpor"), Qt::Key_Home);
    QTest::keyClicks(&Part<QLineEdit>(form, "txtTentImpor"), "1");
    held_["txtTentImpor"].prepend('1');
    FillAtLeastOneLetter(form, "txtStringaInit");
    FillAtLeastOneLetter(form, "txtStringaReset");
    Click(form, "OK");
}

void Editing::FillAlerts(frmFileAvanzate& form)
{
    for (const auto& [box, field] : {std::pair{"chkFile", "txtFile"}, std::pair{"chkSpazio", "txtSpazio"}}) {
        Part<QCheckBox>(form, box).setChecked(true);
        FillAtLeastOneLetter(form, field, Takes::digitsWhenTyped);
    }
    Click(form, "OK");
}

void Editing::FillFlowCharacter(frmDettaglio& form, const char* box, const char* field)
{
    const bool ticked = !texts_.Chooses(qstrcmp(field, "txtXon") == 0 ? 3 : 5);
    Part<QCheckBox>(form, box).setChecked(ticked);
    ticked_[box] = ticked;
    if (Fill(form, field).isEmpty())
        held_[field] = qstrcmp(field, "txtXon") == 0 ? "Q" : "S"; // filled in on leaving the field
    Part<QWidget>(form, "cboHandS").setFocus();
}

// An hourly interval accepts only times. Any other interval accepts any text and uses its leading number:
// none when it starts with a letter; otherwise a number is typed before it.
void Editing::FillSchedule(frmDettaglio& form)
{
    static const QRegularExpression kTime("^[0-9_]{2}:[0-9_]{2}$");
    hourly_ = texts_.Chooses(4);
    QTest::keyClick(&Part<QComboBox>(form, "cboRicorrenza"), Qt::Key_Home);
    for (int row = 0; row < (hourly_ ? 1 : 2); ++row)
        QTest::keyClick(&Part<QComboBox>(form, "cboRicorrenza"), Qt::Key_Down);

    const auto fillTime = [&](const char* name, const char* time) {
        auto& field = Part<QLineEdit>(form, name);
        Enter(field, texts_.For(field_), texts_.WayFor(field_));
        ++field_;
        QVERIFY2(kTime.match(field.text()).hasMatch(), qPrintable(field.text()));
        field.selectAll();
        QTest::keyClicks(&field, time);
    };
    fillTime("mskOrario", "0830");
    if (hourly_) {
        fillTime("mskValore", "0130");
        interval_ = " 5400";
        return;
    }
    const QString text = Fill(form, "mskValore");
    if (!text.isEmpty() && text.front().isLetter()) {
        interval_ = " 0";
        return;
    }
    interval_ = " 259200";
    QTest::keyClick(&Part<QLineEdit>(form, "mskValore"), Qt::Key_Home);
    QTest::keyClicks(&Part<QLineEdit>(form, "mskValore"), "3 giorni");
}

bool Editing::IsTaken()
{
    const auto isTaken = [this](const SiteRow& row) {
        const auto upper = [](const std::string& text) { return UpperLetters(QString::fromStdString(text)); };
        return upper(row.name) == UpperLetters(Stored(held_.at("txtNomeSito"))) ||
               upper(row.code) == UpperLetters(Stored(held_.at("txtCodice")));
    };
    const QString code = held_.at("txtCodice").toUpper();
    return code == "GENERAL" || code == "SITI" || std::ranges::any_of(window_.List().Sites(), isTaken);
}

// Whether a listed site uses the same file for the same purpose.
bool Editing::Collides()
{
    const auto shares = [this](const std::string& code, const char* key, const char* field) {
        return profile_.Read(code, key, 100).value_or("") == PageBytes(held_.at(field));
    };
    return std::ranges::any_of(window_.List().Sites(), [&](const SiteRow& row) {
        const std::string code = PageBytes(QString::fromStdString(row.code));
        return shares(code, "Dati", "txtDati") || shares(code, "Dati2", "txtDati2") ||
               shares(code, "Storico", "txtStorico");
    });
}

std::string Editing::Flow(const char* box, const char* field) const
{
    const std::string text = PageBytes(held_.at(field));
    return ticked_.at(box) ? Signed(static_cast<unsigned char>(text.front()) - 64) : text;
}

// The keys in the order in which a save writes them.
void Editing::WriteSite()
{
    const auto bytes = [this](const char* field) { return PageBytes(held_.at(field)); };
    profile_.Write("Siti", Code(), bytes("txtNomeSito"));
    const std::vector<std::pair<std::string_view, std::string>> site{
        {"SitoAbilitato", "1"},
        {"STimeRead", "20"},
        {"STimeWrite", "20"},
        {"MTimeRead", "60"},
        {"MTimeWrite", "60"},
        {"FlagCRLF", "0"},
        {"Dispositivo", "COM"},
        {"MODEM", "0"},
        {"Handshake", "XON"},
        {"Xon", Flow("chkXon", "txtXon")},
        {"Xoff", Flow("chkXoff", "txtXoff")},
        {"Baud", "9600"},
        {"BitDati", "8"},
        {"Parita", "N"},
        {"Stop", "1"},
        {"Ricorrenza", hourly_ ? "-1" : "-2"},
        {"Ogni", interval_},
        {"Ora", "08:30 21/11/2026"},
        {"AggData", "0"},
        {"AggOra", "0"},
        {"EliminaNull", "0"},
        {"CorreggiCR", "0"},
        {"Dati", bytes("txtDati")},
        {"Dati2", bytes("txtDati2")},
        {"Storico", bytes("txtStorico")},
        {"Modello", "Generico"},
        {"StringaModem", Command(bytes("txtStringaInit"))},
        {"StringaReset", Command(bytes("txtStringaReset"))},
        {"NumeroTel", "ATDT" + bytes("txtTelefono")},
        {"Importazione", bytes("txtTentImpor")},
        {"FileTimeout", bytes("txtFile")},
        {"SpazioTimeout", bytes("txtSpazio")},
        {"TimeoutFineImp", "15"},
        {"CharToDel", "00"},
    };
    for (const auto& [key, value] : site) {
        profile_.Write(Code(), key, value);
        if (key == "Storico")
            profile_.Write("General", "Log", bytes("txtLog"));
    }
}

bool Editing::AddSite()
{
    field_ = 0;
    bool taken = false;
    bool collides = false;
    {
        const ModalVisit<frmDettaglio> editor([&, this](frmDettaglio& form) {
            FillEditor(form);
            QCOMPARE(boxes_.Take(), {});
            taken = IsTaken();
            collides = Collides();
            Click(form, "OK");
            if (form.isVisible())
                QTest::keyClick(&form, Qt::Key_Escape);
        });
        Click(window_.List(), "cmdAggiungi");
    }
    // No other check exists: without a box, the site is saved.
    const qsizetype boxes = boxes_.Take().size();
    if (boxes != (taken || collides ? 1 : 0))
        QTest::qFail("unexpected or missing message box", __FILE__, __LINE__);
    const bool saved = !window_.Editor().Cancel();
    if (saved == taken)
        QTest::qFail("saved although such a site exists, or not saved", __FILE__, __LINE__);
    if (saved)
        WriteSite();
    CompareFile();
    return saved;
}

// Compares the whole file, and explicitly the parts that must never change.
void Editing::CompareFile()
{
    const QByteArray bytes = window_.File();
    QCOMPARE(bytes.split('\n'), QByteArray::fromStdString(profile_.Bytes()).split('\n'));
    QVERIFY(bytes.contains(QByteArray(kOtherSites.data(), kOtherSites.size())));
}

void Editing::CompareField(frmDettaglio& form, const char* field, const char* key,
                           QString (*shown)(const QString&))
{
    const bool isShared = qstrcmp(key, "Log") == 0;
    const std::optional<std::string> stored = profile_.Read(isShared ? "General" : Code(), key, 100);
    if (!stored || stored == "-CaVacca-") // not found again, or treated as missing
        return;
    ++foundAgain_;
    QCOMPARE(Part<QLineEdit>(form, field).text(), shown(PageText(*stored)));
}

void Editing::LookAtIt()
{
    QCOMPARE(ListedSites(*window_.Settings()), ListedSites(profile_)); // as at the next start
    // A code that is too long for the list is written, but not read again.
    if (held_.at("txtCodice").size() < kLongestCode)
        QCOMPARE(ListedSites(window_.List()), ListedSites(profile_));
    const QByteArray before = window_.File();
    {
        const ModalVisit<frmDettaglio> editor([this](frmDettaglio& form) {
            const auto asItIs = [](const QString& text) { return text; };
            QCOMPARE(Part<QLineEdit>(form, "txtNomeSito").text(), Listed(held_["txtNomeSito"]));
            QCOMPARE(Part<QLineEdit>(form, "txtCodice").text(), Stored(held_["txtCodice"]));
            CompareField(form, "txtDati", "Dati", ShownPath);
            CompareField(form, "txtDati2", "Dati2", ShownPath);
            CompareField(form, "txtStorico", "Storico", ShownPath);
            CompareField(form, "txtLog", "Log", ShownPath);
            CompareField(form, "txtStringaInit", "StringaModem", asItIs);
            CompareField(form, "txtStringaReset", "StringaReset", asItIs);
            CompareField(form, "txtTelefono", "NumeroTel",
                         [](const QString& command) { return command.mid(4); });
            CompareField(form, "txtTentImpor", "Importazione", asItIs);
            QTest::keyClick(&form, Qt::Key_Escape);
        });
        Click(window_.List(), "cmdProperties");
    }
    QCOMPARE(window_.File(), before);
    QCOMPARE(boxes_.Take(), {});
}

void Editing::RemoveIt()
{
    Click(window_.List(), "cmdRimuovi");

    QCOMPARE(boxes_.Take().size(), 1);
    profile_.DeleteSection(Code());
    profile_.DeleteKey("Siti", Code());
    CompareFile();
}

// Compares with the list after the next start.
void Editing::CompareWithANewList()
{
    SiteWindow anew(profile_.Bytes());
    QCOMPARE(ListedSites(anew.List()), ListedSites(profile_));
}

// The number of texts for each field, which CORVREC_ODD_NAME_CASES in the environment overrides.
std::size_t Cases()
{
    bool given = false;
    const int cases = qEnvironmentVariableIntValue("CORVREC_ODD_NAME_CASES", &given);
    return given ? static_cast<std::size_t>(cases) : SampleOrAll<std::size_t>(300, kTexts);
}

} // namespace

class odd_names_test : public QObject
{
    Q_OBJECT

private slots:
    static void initTestCase()
    {
        SilencePlatform();
        InstallTexts(*QCoreApplication::instance());
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

    static void theModemGetsOneLineForEachCommand()
    {
        const std::size_t cases = Cases();
        Texts texts;
        frmModem form{std::filesystem::path()};
        const auto enter = [&](const char* field, std::size_t number) {
            Enter(Part<QLineEdit>(form, field), texts.For(number), texts.WayFor(number));
            return WithoutControls(PageBytes(Held(texts.For(number), texts.WayFor(number), Takes::anyText)));
        };
        for (std::size_t turn = 0; turn < cases; ++turn) {
            texts.Turn(turn);
            const std::string reset = Command(enter("txtStringaReset", 0)) + "\r";
            const std::string init = Command(enter("txtStringaInit", 1)) + "\r";
            const std::string dial = "ATDT" + enter("txtTelefono", 2) + "\r";
            FakeClock clock;
            ScriptedPump pump(clock);
            FakePort port(clock);
            CancelFlag cancel;
            ReplyWait wait(port, clock, pump, cancel);
            port.Open();
            port.Answer(reset, "OK\r\n");
            port.Answer(init, "OK\r\n");
            port.Answer(dial, "CONNECT\r\n");

            const Connection connection = InitModem(wait, form.Settings());

            QCOMPARE(connection, Connection::connected);
            QCOMPARE(port.Sent(), std::string(reset).append(init).append(dial));
            QCOMPARE(std::ranges::count(port.Sent(), '\r'), 3);
            QVERIFY(port.Sent().find_first_of(std::string_view("\n\0", 2)) == std::string::npos);
        }
    }

    static void theDevicesDateAndTimeKeepTheirForm()
    {
        static const QRegularExpression kDate("^[0-9_]{2}/[0-9_]{2}/[0-9_]{2}$");
        static const QRegularExpression kTime("^[0-9_]{2}:[0-9_]{2}$");
        const std::size_t cases = Cases();
        Texts texts;
        BufferWindow window;
        window.Open();
        for (std::size_t turn = 0; turn < cases; ++turn) {
            texts.Turn(turn);
            Enter(window.Field("mskData"), texts.For(0), texts.WayFor(0));
            Enter(window.Field("mskOra"), texts.For(1), texts.WayFor(1));
            QVERIFY2(kDate.match(window.Field("mskData").text()).hasMatch(), qPrintable(texts.For(0)));
            QVERIFY2(kTime.match(window.Field("mskOra").text()).hasMatch(), qPrintable(texts.For(1)));
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::odd_names_test> registered;
#include "odd_names_test.moc"
