// A disk that refuses every write: the windows report nothing and continue as if it had succeeded.
#include "tests/support/activation.h"
#include "tests/support/cases.h"
#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/probed_calls.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <cerrno>
#include <limits>

namespace corvrec
{

namespace
{

void PressOk(frmDettaglio& editor)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
    QVERIFY(!editor.isVisible());
    QVERIFY(!editor.Cancel());
}

void DisableAndMakeContinuous(frmDettaglio& editor)
{
    Set(editor, {"chkAbilitato: off", "cboRicorrenza: Continua"});
    PressOk(editor);
}

void FillIn(frmDettaglio& editor)
{
    Set(editor, {"txtNomeSito: Gamma", "txtCodice: C", "txtDati: 1", "txtDati2: 2", "txtStorico: 3"});
    PressOk(editor);
}

// The program over a disk whose calls can fail.
struct Program {
    // Presses the button and acts in the editor that it opens.
    void Edit(const char* button, void (*act)(frmDettaglio&))
    {
        const ModalVisit<frmDettaglio> editor(act);
        Click(button);
    }

    void Click(const char* button)
    {
        QTest::mouseClick(&SiteWindow::Part<QPushButton>(window.List(), button), Qt::LeftButton);
    }

    void Change() { Edit("cmdProperties", DisableAndMakeContinuous); }
    void Add() { Edit("cmdAggiungi", FillIn); }
    void Remove()
    {
        const MessageProbe question(QString("Sì"));
        Click("cmdRimuovi");
    }

    QByteArray Line(const char* key) { return QByteArray::fromStdString(window.Settings().Line("A", key)); }

    UnansweredBoxes unansweredBoxes;
    ProbedCalls calls;
    SiteWindow window{SettingsWith({"A", "B"}), std::nullopt,
                      [this](const std::filesystem::path& file) { return OpenProfileFile(file, calls); }};
};

// What a user does, and what the list shows afterwards.
struct Action {
    const char* name;
    void (Program::*act)();
    QStringList rows;
};

const std::array<Action, 3> kActions{{
    {"changed site", &Program::Change, {"Sito A | A | No | Continua", "Sito B | B | Sì | Oraria"}},
    {"new site",
     &Program::Add,
     {"Sito A | A | Sì | Oraria", "Sito B | B | Sì | Oraria", "Gamma | C | Sì | Continua"}},
    {"removed site", &Program::Remove, {"Sito B | B | Sì | Oraria"}},
}};

} // namespace

class refused_writes_test : public QObject
{
    Q_OBJECT

private slots:
    static void listShowsSitesAsIfSaved_data() { AddCases(kActions); }
    static void listShowsSitesAsIfSaved()
    {
        QFETCH(const Action, given);
        for (const int error : {ENOSPC, EDQUOT, EIO, EFBIG}) {
            Program program;
            const QByteArray before = program.window.File();
            program.calls.ForgetMade();
            program.calls.FailAll("pwrite", error);
            program.calls.FailAll("fallocate", error);

            (program.*given.act)();

            QVERIFY(std::ranges::count(program.calls.Made(), "pwrite") +
                        std::ranges::count(program.calls.Made(), "fallocate") >
                    0);
            QCOMPARE(program.window.Rows(), given.rows);
            QCOMPARE(program.window.File(), before);
        }
    }

    // The old section is deleted before the new one is written, so a disk that fails in between loses the
    // site. Everything else stays. Saving again writes it whole.
    static void diskThatFailsAfterTheDeletionLosesOneSite()
    {
        Program rehearsal;
        rehearsal.calls.ForgetMade();
        rehearsal.calls.FailFrom(std::numeric_limits<std::size_t>::max(), ENOSPC);
        rehearsal.Change();
        const auto& made = rehearsal.calls.Made();
        const auto deletion = std::ranges::find(made, "ftruncate");
        QVERIFY(deletion != made.end());
        Program program;
        SettingsFile without(SettingsWith({"A", "B"}));
        without->DeleteSection("A");
        program.calls.ForgetMade();
        program.calls.FailFrom(static_cast<std::size_t>(deletion - made.begin()) + 1, ENOSPC);

        program.Change();

        QCOMPARE(program.window.Rows(),
                 QStringList({"Sito A | A | No | Continua", "Sito B | B | Sì | Oraria"}));
        QCOMPARE(program.window.File(), QByteArray::fromStdString(without.Bytes()));
        program.calls.Mend();
        program.Edit("cmdProperties",
                     PressOk); // with a new site's values, except for those that the window keeps
        QCOMPARE(program.Line("Dispositivo"), "Dispositivo=COM");
        QCOMPARE(program.Line("CharToDel"), "CharToDel=00");
    }

    static void savingAgainCompletesTheSite()
    {
        Program program;
        program.calls.ForgetMade();
        program.calls.FailAll("pwrite", ENOSPC);
        program.calls.FailAll("fallocate", ENOSPC);
        program.Change();
        program.calls.Mend();

        program.Change();

        QCOMPARE(program.Line("SitoAbilitato"), "SitoAbilitato=0");
        QCOMPARE(program.Line("Ricorrenza"), "Ricorrenza=0");
        QCOMPARE(program.window.Rows(), kActions.front().rows);
    }

    static void listSaysThatTheFileIsReadOnly()
    {
        Program program;
        const auto& line = SiteWindow::Part<QLabel>(program.window.List(), "lblFile");
        QCOMPARE(line.text().section(" – ", 1), "");

        // The permissions change while another program is in front.
        program.calls.DenyWriting(EACCES);
        QWidget other;
        other.show();
        BringToFront(other);
        BringToFront(program.window.List());

        QCOMPARE(line.text().section(" – ", 1), "sola lettura");
        QVERIFY(line.fontMetrics().horizontalAdvance(line.text()) <= line.width());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::refused_writes_test> registered;
#include "refused_writes_test.moc"
