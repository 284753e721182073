// A monkey that knows nothing of the program uses all of its windows. The settings file has to survive, and
// Escape has to lead back to the site list from everywhere.
#include "app/frmSiti.h"
#include "core/file/code_page.h"
#include "tests/support/listed_sites.h"
#include "tests/support/registered_test.h"
#include "tests/support/sample.h"
#include "tests/support/settings_file.h"
#include "tests/ui/chance_device.h"
#include "tests/ui/monkey.h"
#include "tests/ui/watched_file.h"
#include "ui/editor/frmDettaglio.h"

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QLineEdit>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <fstream>
#include <memory>

namespace corvrec
{

namespace
{

constexpr int kEventsOfARun = 10'000;
constexpr int kEventsBetweenChecks = 1'000;
constexpr std::size_t kEventsBetweenEscapes = 250; // on average

// From the innermost window to the list: a popup, a box, the modem's dialog, the buffer window and the
// editor. Each may first need a held mouse button to be released.
constexpr int kMostEscapes = 8;

// After this many events the file is replaced: by then the original sites are gone, and many odd codes
// remain.
constexpr int kEventsOfAFile = 1'000;

// Foreign lines, which the program must not touch.
constexpr std::string_view kForeignHead = "; Registratore di Bologna\r\n"
                                          "Orfana=prima di ogni sezione\r\n"
                                          "\r\n"
                                          "[Altro programma]\r\n"
                                          "; nota\r\n"
                                          "Chiave = valore \r\n"
                                          "riga senza segno\r\n";

constexpr std::string_view kSites =
    "[General]\r\n"
    "Com=COM2\r\n"
    "Log=Corvrec.log\r\n"
    "[Siti]\r\n"
    "; codice=nome\r\n"
    "UNO=Sede di Forl\xEC\r\n"
    "DUE=\"Magazzino\"\r\n"
    "TRE=Buffer\r\n"
    "[UNO]\r\n"
    "; nota di UNO\r\n"
    "SitoAbilitato=1\r\nDispositivo=STX30\r\nMODEM=1\r\nRicorrenza=-1\r\nOgni= 3600\r\n"
    "Ora=08:30 21/11/2026\r\n"
    "StringaModem=ATX3\r\nStringaReset=AT&F\r\nNumeroTel=ATDP0544123456\r\nImportazione=3\r\n"
    "Dati=c:\\dati\\uno.txt\r\nDati2=c:\\scambio\\uno.txt\r\nStorico=c:\\storico\\uno.txt\r\n"
    "[DUE]\r\n"
    "SitoAbilitato=1\r\nDispositivo=COM\r\nMODEM=0\r\nRicorrenza=-2\r\nOgni= 172800\r\n"
    "Ora=08.30 01/02/2020p\r\n"
    "Dati=c:\\dati\\due.txt\r\nDati2=c:\\scambio\\due.txt\r\nStorico=c:\\storico\\due.txt\r\n"
    "[TRE]\r\n"
    "SitoAbilitato=0\r\nDispositivo=STX40\r\nMODEM=0\r\nRicorrenza= 65\r\nOgni= 604800\r\n"
    "Ora=08:30 21/11/2026\r\n"
    "Dati=c:\\dati\\tre.txt\r\nDati2=c:\\scambio\\tre.txt\r\nStorico=c:\\storico\\tre.txt\r\n";

std::string Settings()
{
    return std::string(kForeignHead).append(kSites);
}

// The program with a watched settings file and a watched line.
class Program
{
public:
    Program(Chance& chance, const std::function<void(QString)>& report)
        : chance_(chance)
        , report_(report)
        , events_(clock_, chance)
        , watched_(
              *settings_, Settings(), [this] { return EditedCode(); }, report)
    {
        std::ofstream(settings_.Directory() / "modem.dat")
            << "Modello A=X3S0=0\r\nModello B=X4&K3=1\r\nATZ\r\n";
        Start();
    }

    void Start()
    {
        editor_ = nullptr;
        list_ = std::make_unique<frmSiti>(
            Environment{settings_.Directory(), watched_, clock_, events_,
                        [this] { return std::make_unique<ChanceDevice>(clock_, chance_, report_); }});
        if (!list_->Load())
            report_("the settings file no longer names a port");
        list_->LoadEditor();
        list_->RefreshGrid();
        list_->show();
        editor_ = list_->findChild<frmDettaglio*>();
    }

    frmSiti& List() { return *list_; }
    const WatchedFile& File() const { return watched_; }
    std::string Bytes() const { return settings_.Bytes(); }
    bool IsWaiting() const { return events_.IsInside(); }

private:
    std::string EditedCode() const
    {
        if (!editor_->isVisible())
            return Cp1252FromUtf8(list_->SelectedSite());
        return Cp1252FromUtf8(editor_->findChild<QLineEdit*>("txtCodice")->text().toStdString());
    }

    Chance& chance_;
    std::function<void(QString)> report_;
    SettingsFile settings_{Settings()};
    FakeClock clock_;
    LeapingPump events_;
    WatchedFile watched_;
    std::unique_ptr<frmSiti> list_;
    frmDettaglio* editor_ = nullptr;
};

// Totals over all runs.
struct Seen {
    QMap<QString, int> windows; // events in front of each kind of window
    int saves = 0;
    int removals = 0;
    int starts = 0;
    int mostEscapes = 0;
};

// The events of one seed. A timer lets the monkey act in whatever event loop is running, so dialogs and waits
// are driven too.
class Run : public QObject
{
public:
    Run(std::uint64_t seed, Seen& seen)
        : seed_(seed)
        , seen_(seen)
        , chance_(seed)
    {
        qApp->installEventFilter(this);
        connect(&timer_, &QTimer::timeout, this, &Run::Tick);
    }

    void Play()
    {
        timer_.start(0);
        home_.exec();
        timer_.stop();
        Count();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // The monkey must not change files of this machine.
        if (auto* const chooser = qobject_cast<QFileDialog*>(watched);
            chooser != nullptr && event->type() == QEvent::Show)
            chooser->setOption(QFileDialog::ReadOnly);
        return QObject::eventFilter(watched, event);
    }

private:
    void Tick();
    void Step();
    bool IsHome() const;
    QWidget& Front();
    void ArriveHome();
    void Escape();
    void Check();
    void Count();
    void Report(const QString& what);

    std::uint64_t seed_;
    Seen& seen_;
    Chance chance_;
    Monkey monkey_{chance_};
    std::unique_ptr<Program> program_{
        std::make_unique<Program>(chance_, [this](const QString& what) { Report(what); })};
    QTimer timer_;
    QEventLoop home_;
    int homeLevel_ = QThread::currentThread()->loopLevel() + 1;
    bool pending_ = false;
    bool failed_ = false;
    int events_ = 0;
    int nextFile_ = kEventsOfAFile;
    bool escaping_ = false;
    int escapes_ = 0;
    bool wasHome_ = false;
};

// The event runs after the timer's handler: it may open a dialog, and a timer does not fire while it is being
// handled.
void Run::Tick()
{
    if (pending_)
        return;
    pending_ = true;
    QMetaObject::invokeMethod(this, &Run::Step, Qt::QueuedConnection);
}

void Run::Step()
{
    pending_ = false;
    const bool isHome = IsHome();
    if (isHome && !wasHome_)
        ArriveHome();
    wasHome_ = isHome && program_->List().isVisible();
    if (!home_.isRunning())
        return;
    if (escaping_) {
        Escape();
        return;
    }
    if (events_ % kEventsBetweenChecks == 0)
        Check();
    ++events_;
    escaping_ = events_ >= kEventsOfARun || chance_.Below(kEventsBetweenEscapes) == 0;
    wasHome_ = wasHome_ && !escaping_;
    QWidget& front = Front();
    ++seen_.windows[front.metaObject()->className()];
    monkey_.Act(front);
}

// True when no handler of the program is running and nothing is open in front of the list.
bool Run::IsHome() const
{
    return QThread::currentThread()->loopLevel() == homeLevel_ && !program_->IsWaiting() &&
           QApplication::activeModalWidget() == nullptr && QApplication::activePopupWidget() == nullptr;
}

QWidget& Run::Front()
{
    if (QWidget* const popup = QApplication::activePopupWidget())
        return *popup;
    QWidget* const modal = QApplication::activeModalWidget();
    QWidget& window = modal != nullptr ? *modal : program_->List();
    // Without a window manager, no window is activated when another one closes.
    if (!window.isActiveWindow())
        QApplication::setActiveWindow(&window);
    return window;
}

void Run::ArriveHome()
{
    Check();
    seen_.mostEscapes = std::max(seen_.mostEscapes, escapes_);
    escapes_ = 0;
    escaping_ = false;
    if (events_ >= kEventsOfARun || failed_) {
        home_.quit();
    } else if (events_ >= nextFile_) {
        Count();
        nextFile_ = events_ + kEventsOfAFile;
        program_ = std::make_unique<Program>(chance_, [this](const QString& what) { Report(what); });
    } else if (!program_->List().isVisible()) {
        if (chance_.Percent(75)) { // starting takes long, so it is mostly skipped
            program_->List().show();
            return;
        }
        ++seen_.starts;
        program_->Start();
        if (ListedSites(program_->List()) != ListedSites(program_->File().Expected()))
            Report("the list shows other sites");
    }
}

void Run::Escape()
{
    if (++escapes_ > kMostEscapes)
        Report("no way back to the list");
    if (escapes_ > 10 * kMostEscapes)
        qFatal("Escape does not lead back to the list");
    monkey_.PressEscape(Front());
}

void Run::Check()
{
    const std::string bytes = program_->Bytes();
    if (bytes != program_->File().Expected().Bytes())
        Report("the settings file differs from what was written");
    if (!bytes.starts_with(kForeignHead))
        Report("foreign lines have changed");
}

void Run::Count()
{
    seen_.saves += program_->File().Saves();
    seen_.removals += program_->File().Removals();
}

void Run::Report(const QString& what)
{
    if (failed_)
        return;
    failed_ = true;
    escaping_ = true;
    QTest::qFail(qPrintable(QString("seed %1, event %2: %3\n%4")
                                .arg(seed_)
                                .arg(events_)
                                .arg(what, monkey_.Trail().join('\n'))),
                 __FILE__, __LINE__);
}

int FromEnvironment(const char* name, int otherwise)
{
    bool given = false;
    const int number = qEnvironmentVariableIntValue(name, &given);
    return given ? number : otherwise;
}

} // namespace

class monkey_test : public QObject
{
    Q_OBJECT

    QTemporaryDir configuration_;
    int events_ = FromEnvironment("CORVREC_MONKEY_EVENTS", SampleOrAll(10'000, 10'000, 1'000'000));
    Seen seen_;

private slots:
    void initTestCase()
    {
        // The file chooser stores what it last showed.
        qputenv("XDG_CONFIG_HOME", configuration_.path().toUtf8());
        QApplication::setQuitOnLastWindowClosed(false);
    }

    // To repeat one run, set CORVREC_MONKEY_SEED and CORVREC_MONKEY_EVENTS=10000 in the environment.
    void everyWindowCanBeLeftAndOnlyTheEditedSiteChanges_data()
    {
        QTest::addColumn<int>("seed");
        const int first = FromEnvironment("CORVREC_MONKEY_SEED", 1);
        for (int run = 0; run * kEventsOfARun < events_; ++run)
            QTest::addRow("seed %d", first + run) << first + run;
    }

    void everyWindowCanBeLeftAndOnlyTheEditedSiteChanges()
    {
        QFETCH(int, seed);
        // For example when a dialog is opened while it is open. Names with NULs are the file chooser's
        // concern; the offscreen platform warns about what it lacks.
        QTest::failOnWarning(QRegularExpression("^(?!Broken filename|This plugin does not support)"));
        Run(static_cast<std::uint64_t>(seed), seen_).Play();
    }

    // A monkey that reached few windows has proved nothing.
    void cleanupTestCase()
    {
        qInfo("%d events: %d saves, %d removals, %d starts; Escape at most %d times in a row", events_,
              seen_.saves, seen_.removals, seen_.starts, seen_.mostEscapes);
        qInfo() << "events in front of each window:" << seen_.windows;
        for (const char* const window :
             {"corvrec::frmSiti", "corvrec::frmDettaglio", "corvrec::frmModem", "corvrec::frmTrasfAvanzate",
              "corvrec::frmFileAvanzate", "corvrec::frmSX", "corvrec::frmConnessione", "QFileDialog",
              "QMessageBox", "QMenu", "QComboBoxPrivateContainer"})
            QVERIFY2(seen_.windows.contains(window) || events_ < 2 * kEventsOfARun, window);
        QVERIFY(seen_.saves > 0 && seen_.removals > 0 && seen_.starts > 0);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::monkey_test> registered;
#include "monkey_test.moc"
