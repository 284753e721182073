// A disk that refuses every write: the windows report nothing and continue as if it had succeeded.
#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/probed_calls.h"
#include "tests/support/registered_test.h"
#include "tests/support/site_window.h"
#include "tests/support/unanswered_boxes.h"
#include "ui/widgets/texts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>

namespace corvrec
{

namespace
{

// The program over a disk that accepts no bytes from Refuse to Mend.
class RefusedWindow
{
public:
    RefusedWindow()
        : window_(SettingsWith({"A", "B"}), std::nullopt, calls_)
    {
    }

    void Refuse(int error)
    {
        calls_.ForgetMade();
        calls_.FailAll("pwrite", error);
        calls_.FailAll("fallocate", error);
    }
    // Fails from that call on, counted from now.
    void RefuseFrom(std::size_t call)
    {
        calls_.ForgetMade();
        calls_.FailFrom(call, ENOSPC);
    }
    // The first call after the one that truncated the file.
    [[nodiscard]] std::size_t CallAfterTheDeletion() const
    {
        const auto deletion = std::ranges::find(calls_.Made(), "ftruncate");
        QTEST_ASSERT(deletion != calls_.Made().end());
        return static_cast<std::size_t>(deletion - calls_.Made().begin()) + 1;
    }
    void Mend() { calls_.Mend(); }

    // Write attempts since Refuse.
    [[nodiscard]] std::ptrdiff_t Attempts() const
    {
        return std::ranges::count_if(
            calls_.Made(), [](const std::string& name) { return name == "pwrite" || name == "fallocate"; });
    }

    void Click(const char* button)
    {
        QTest::mouseClick(&SiteWindow::Part<QPushButton>(window_.List(), button), Qt::LeftButton);
    }

    // The list as a user reads it: each row's cells separated by "|".
    QStringList Rows()
    {
        const auto& cells = *SiteWindow::Part<QTableView>(window_.List(), "dgrdGrigliaSiti").model();
        QStringList rows;
        for (int row = 0; row < cells.rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < cells.columnCount(); ++column)
                texts.append(cells.index(row, column).data().toString());
            rows.append(texts.join('|'));
        }
        return rows;
    }

    SiteWindow& Sites() { return window_; }

private:
    UnansweredBoxes unansweredBoxes_;
    ProbedCalls calls_;
    SiteWindow window_;
};

void PressOk(frmDettaglio& editor)
{
    QTest::mouseClick(&SiteWindow::Part<QPushButton>(editor, "OK"), Qt::LeftButton);
    QVERIFY(!editor.isVisible());
    QVERIFY(!editor.Cancel());
}

void DisableAndMakeContinuous(frmDettaglio& editor)
{
    SiteWindow::Part<QCheckBox>(editor, "chkAbilitato").click();
    SiteWindow::Part<QComboBox>(editor, "cboRicorrenza").setCurrentIndex(0);
    PressOk(editor);
}

void FillIn(frmDettaglio& editor)
{
    for (const auto& [field, text] : {std::pair("txtNomeSito", "Gamma"), {"txtCodice", "C"}})
        QTest::keyClicks(&SiteWindow::Part<QLineEdit>(editor, field), text);
    for (const char* const file : {"txtDati", "txtDati2", "txtStorico"})
        SiteWindow::Part<QLineEdit>(editor, file).setText(file);
    PressOk(editor);
}

} // namespace

class refused_writes_test : public QObject
{
    Q_OBJECT

    static void Errors()
    {
        QTest::addColumn<int>("error");
        QTest::newRow("disk full") << ENOSPC;
        QTest::newRow("quota reached") << EDQUOT;
        QTest::newRow("disk error") << EIO;
        QTest::newRow("file too large") << EFBIG;
    }

private slots:
    static void initTestCase() { InstallTexts(*QCoreApplication::instance()); }

    static void changedSiteIsListedAsIfSaved_data() { Errors(); }
    static void changedSiteIsListedAsIfSaved()
    {
        QFETCH(int, error);
        RefusedWindow window;
        const QByteArray before = window.Sites().File();
        const ModalVisit<frmDettaglio> editor(DisableAndMakeContinuous);
        window.Refuse(error);

        window.Click("cmdProperties");

        QVERIFY(window.Attempts() > 0);
        QCOMPARE(window.Rows(), QStringList({"Sito A|A|No|Continua", "Sito B|B|Sì|Oraria"}));
        QCOMPARE(window.Sites().File(), before);
    }

    static void newSiteIsListedAsIfSaved_data() { Errors(); }
    static void newSiteIsListedAsIfSaved()
    {
        QFETCH(int, error);
        RefusedWindow window;
        const QByteArray before = window.Sites().File();
        const ModalVisit<frmDettaglio> editor(FillIn);
        window.Refuse(error);

        window.Click("cmdAggiungi");

        QVERIFY(window.Attempts() > 0);
        QCOMPARE(window.Rows(),
                 QStringList({"Sito A|A|Sì|Oraria", "Sito B|B|Sì|Oraria", "Gamma|C|Sì|Continua"}));
        QCOMPARE(window.Sites().File(), before);
    }

    static void removedSiteIsNoLongerListed_data() { Errors(); }
    static void removedSiteIsNoLongerListed()
    {
        QFETCH(int, error);
        RefusedWindow window;
        const QByteArray before = window.Sites().File();
        const MessageProbe question(QString("Sì"));
        window.Refuse(error);

        window.Click("cmdRimuovi");

        QVERIFY(window.Attempts() > 0);
        QCOMPARE(window.Rows(), QStringList({"Sito B|B|Sì|Oraria"}));
        QCOMPARE(window.Sites().File(), before);
    }

    // The old section is deleted before the new one is written, so a disk that fails in between loses the
    // site. Everything else stays.
    static void diskThatFailsAfterTheDeletionLosesOneSite()
    {
        RefusedWindow rehearsal;
        {
            const ModalVisit<frmDettaglio> editor(DisableAndMakeContinuous);
            rehearsal.RefuseFrom(std::numeric_limits<std::size_t>::max());
            rehearsal.Click("cmdProperties");
        }
        RefusedWindow window;
        SettingsFile without(SettingsWith({"A", "B"}));
        without->DeleteSection("A");
        {
            const ModalVisit<frmDettaglio> editor(DisableAndMakeContinuous);
            window.RefuseFrom(rehearsal.CallAfterTheDeletion());
            window.Click("cmdProperties");
        }
        QCOMPARE(window.Rows(), QStringList({"Sito A|A|No|Continua", "Sito B|B|Sì|Oraria"}));
        QCOMPARE(window.Sites().File(), QByteArray::fromStdString(without.Bytes()));
        window.Mend();
        const ModalVisit<frmDettaglio> editor(PressOk);

        window.Click("cmdProperties"); // with a new site's values, except for those that the window keeps

        QCOMPARE(window.Sites().Settings().Line("A", "Dispositivo"), "Dispositivo=COM");
        QCOMPARE(window.Sites().Settings().Line("A", "CharToDel"), "CharToDel=00");
    }

    static void savingAgainCompletesTheSite()
    {
        RefusedWindow window;
        {
            const ModalVisit<frmDettaglio> editor(DisableAndMakeContinuous);
            window.Refuse(ENOSPC);
            window.Click("cmdProperties");
        }
        window.Mend();
        const ModalVisit<frmDettaglio> editor(DisableAndMakeContinuous);

        window.Click("cmdProperties");

        QCOMPARE(window.Sites().Settings().Line("A", "SitoAbilitato"), "SitoAbilitato=0");
        QCOMPARE(window.Sites().Settings().Line("A", "Ricorrenza"), "Ricorrenza=0");
        QCOMPARE(window.Rows(), QStringList({"Sito A|A|No|Continua", "Sito B|B|Sì|Oraria"}));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::refused_writes_test> registered;
#include "refused_writes_test.moc"
