#include "tests/support/activation.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/mask_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace corvrec
{

namespace
{

// A window with a plain box before the masked one, as in the dialogs.
class Fixture
{
public:
    explicit Fixture(const QString& mask, const QString& text = {})
    {
        auto* const layout = new QVBoxLayout(&window_);
        layout->addWidget(&other_);
        layout->addWidget(&box);
        box.setMask(mask);
        if (!text.isNull())
            box.setText(text);
        window_.show();
        BringToFront(window_);
        other_.setFocus();
    }

    void PutCaret(int position)
    {
        box.setFocus();
        box.setCursorPosition(position);
    }

    void Select(int start, int length)
    {
        box.setFocus();
        box.setSelection(start, length);
    }

    void Paste(const QString& text)
    {
        QApplication::clipboard()->setText(text);
        QTest::keySequence(&box, QKeySequence::Paste);
    }

private:
    QWidget window_;
    QLineEdit other_;

public:
    MaskEdit box;
};

} // namespace

class mask_edit_test : public QObject
{
    Q_OBJECT

private slots:
    void showsLiteralsAndPrompts()
    {
        const Fixture time("##:##");
        QCOMPARE(time.box.text(), QString("__:__"));
        QCOMPARE(time.box.displayText(), QString("__:__"));

        const Fixture date("##/##/##", "31/12/__");
        QCOMPARE(date.box.text(), QString("31/12/__"));
    }

    void aNewMaskEmptiesTheBox()
    {
        Fixture time("##:##", "08:30");

        time.box.setMask("");
        QCOMPARE(time.box.text(), QString());

        time.box.setText("1");
        time.box.setMask("##:##");
        QCOMPARE(time.box.text(), QString("__:__"));
    }

    void masksAndFormatsAreProperties()
    {
        MaskEdit box;

        QVERIFY(box.setProperty("mask", "##:##"));
        QVERIFY(box.setProperty("format", "hh:mm"));

        QCOMPARE(box.mask(), QString("##:##"));
        QCOMPARE(box.format(), QString("hh:mm"));
        QCOMPARE(box.text(), QString("__:__"));
    }

    void selectedTextIsReplacedWithoutTheFocus()
    {
        Fixture time("##:##", "__:__");

        time.box.setSelection(0, 2);
        time.box.setSelText("12");
        QCOMPARE(time.box.text(), QString("12:__"));
        QCOMPARE(time.box.cursorPosition(), 3);

        time.box.setSelection(2, 2); // starts at the literal
        time.box.setSelText("34");
        QCOMPARE(time.box.text(), QString("12:34"));

        time.box.setSelection(3, 2);
        time.box.setSelText("56");
        QCOMPARE(time.box.text(), QString("12:56"));
        QVERIFY(!time.box.hasFocus());
    }

    void selectionsAreClippedToTheText()
    {
        Fixture time("##:##", "08:30");

        time.box.setSelection(0, 2000);
        QCOMPARE(time.box.selectedText(), QString("08:30"));

        time.box.setSelection(3, 2000);
        QCOMPARE(time.box.selectedText(), QString("30"));

        time.box.setSelection(2000, 2000);
        QCOMPARE(time.box.selectedText(), QString());
        QCOMPARE(time.box.cursorPosition(), 5);

        time.box.setSelection(-3, 2);
        QCOMPARE(time.box.selectedText(), QString("08"));
    }

    void typingFillsThePlaces()
    {
        Fixture time("##:##");
        time.PutCaret(0);

        QTest::keyClicks(&time.box, "083");
        QCOMPARE(time.box.text(), QString("08:3_"));
        QCOMPARE(time.box.cursorPosition(), 4);

        QTest::keyClicks(&time.box, "0");
        QCOMPARE(time.box.text(), QString("08:30"));
    }

    void typingReplacesTheSelection()
    {
        Fixture time("##:##", "08:30");
        time.Select(0, 5);

        QTest::keyClicks(&time.box, "9");
        QCOMPARE(time.box.text(), QString("9_:__"));
        QCOMPARE(time.box.cursorPosition(), 1);

        QTest::keyClicks(&time.box, ":15");
        QCOMPARE(time.box.text(), QString("9_:15"));
    }

    void typingTheSameDigitMovesTheCaret()
    {
        Fixture time("##:##", "11:11");
        time.PutCaret(0);

        QTest::keyClicks(&time.box, "1");

        QCOMPARE(time.box.text(), QString("11:11"));
        QCOMPARE(time.box.cursorPosition(), 1);
    }

    void otherKeysAreRefused()
    {
        Fixture time("##:##", "08:30");
        time.Select(0, 5);

        QTest::keyClicks(&time.box, "a /_#.-");

        QCOMPARE(time.box.text(), QString("08:30"));
        QCOMPARE(time.box.cursorPosition(), 0);
    }

    void typingTheLiteralMovesToTheNextGroup()
    {
        Fixture time("##:##", "__:__");
        time.PutCaret(0);

        QTest::keyClicks(&time.box, "8:");

        QCOMPARE(time.box.text(), QString("8_:__"));
        QCOMPARE(time.box.cursorPosition(), 3);

        Fixture date("##/##/##");
        date.PutCaret(0);
        QTest::keyClicks(&date.box, "31/12/26");
        QCOMPARE(date.box.text(), QString("31/12/26"));
    }

    void aFullBoxTakesNoMore()
    {
        Fixture time("##:##", "08:30");
        time.PutCaret(5);

        QTest::keyClicks(&time.box, "7");

        QCOMPARE(time.box.text(), QString("08:30"));
        QCOMPARE(time.box.cursorPosition(), 5);
    }

    void backspaceStepsOverALiteral()
    {
        Fixture time("##:##", "08:30");
        time.PutCaret(3);

        QTest::keyClick(&time.box, Qt::Key_Backspace);
        QCOMPARE(time.box.text(), QString("0_:30"));
        QCOMPARE(time.box.cursorPosition(), 1);

        QTest::keyClick(&time.box, Qt::Key_Backspace);
        QTest::keyClick(&time.box, Qt::Key_Backspace);
        QCOMPARE(time.box.text(), QString("__:30"));
        QCOMPARE(time.box.cursorPosition(), 0);
    }

    void deleteStepsOverALiteral()
    {
        Fixture time("##:##", "08:30");
        time.PutCaret(2);

        QTest::keyClick(&time.box, Qt::Key_Delete);

        QCOMPARE(time.box.text(), QString("08:_0"));
        QCOMPARE(time.box.cursorPosition(), 3);
    }

    void deletingOneOfTwoEqualDigitsEmptiesItsOwnPlace()
    {
        Fixture time("##:##", "11:__");

        time.PutCaret(0);
        QTest::keyClick(&time.box, Qt::Key_Delete);
        QCOMPARE(time.box.text(), QString("_1:__"));

        time.box.setText("11:__");
        time.PutCaret(2);
        QTest::keyClick(&time.box, Qt::Key_Backspace);
        QCOMPARE(time.box.text(), QString("1_:__"));
    }

    void deletingTheSelectionEmptiesItsPlaces()
    {
        Fixture time("##:##", "08:30");
        time.Select(1, 3);

        QTest::keyClick(&time.box, Qt::Key_Delete);

        QCOMPARE(time.box.text(), QString("0_:_0"));
        QCOMPARE(time.box.cursorPosition(), 1);
    }

    void pasteFillsTheSelection()
    {
        Fixture time("##:##", "08:30");

        time.Select(0, 5);
        time.Paste("ore 9:15\r\n");
        QCOMPARE(time.box.text(), QString("9_:15"));

        time.Select(0, 5);
        time.Paste("domani");
        QCOMPARE(time.box.text(), QString("9_:15"));

        time.Select(0, 2);
        time.Paste("\U0001F55807"); // starts with a character outside the basic plane
        QCOMPARE(time.box.text(), QString("07:15"));
    }

    void cutEmptiesThePlaces()
    {
        Fixture time("##:##", "08:30");
        time.Select(3, 2);

        QTest::keySequence(&time.box, QKeySequence::Cut);

        QCOMPARE(time.box.text(), QString("08:__"));
        QCOMPARE(QApplication::clipboard()->text(), QString("30"));
    }

    void inputMethodsFillThePlaces()
    {
        Fixture time("##:##");
        time.PutCaret(0);
        QInputMethodEvent event;
        event.setCommitString("1a2");

        QApplication::sendEvent(&time.box, &event);

        QCOMPARE(time.box.text(), QString("12:__"));
    }

    void aDropFillsThePlaces()
    {
        Fixture time("##:##", "08:30");
        QMimeData text;
        text.setText("12:34");
        const QPoint front(0, time.box.height() / 2);
        QDragEnterEvent enter(front, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QDropEvent drop(front, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);

        QApplication::sendEvent(&time.box, &enter);
        QApplication::sendEvent(&time.box, &drop);

        QCOMPARE(time.box.text(), QString("12:34"));
    }

    void undoNeverRestoresATextThatDoesNotFit()
    {
        Fixture time("##:##", "08:30");
        time.PutCaret(0);
        QTest::keyClicks(&time.box, "12");

        for (int presses = 0; presses < 3; ++presses) {
            QTest::keySequence(&time.box, QKeySequence::Undo);
            QCOMPARE(time.box.text(), QString("12:30"));
        }
    }

    void textsSetThroughTheBaseClassAreFittedToo()
    {
        Fixture time("##:##", "08:30");

        static_cast<QLineEdit&>(time.box).setText("9:15 domani");
        QCOMPARE(time.box.text(), QString("9_:15"));

        time.box.clear();
        QCOMPARE(time.box.text(), QString("__:__"));
    }

    void onlyFittingTextsAreSignalled()
    {
        Fixture time("##:##", "__:__");
        time.PutCaret(0);
        const QSignalSpy changes(&time.box, &QLineEdit::textChanged);

        QTest::keyClicks(&time.box, "1a2");

        for (const QList<QVariant>& change : changes)
            QVERIFY(QStringList({"1_:__", "12:__"}).contains(change.first().toString()));
        QCOMPARE(changes.last().first().toString(), QString("12:__"));
    }

    void tabDoesNotSelect()
    {
        Fixture time("##:##", "08:30");

        QTest::keyClick(time.box.window()->focusWidget(), Qt::Key_Tab);

        QVERIFY(time.box.hasFocus());
        QCOMPARE(time.box.selectedText(), QString());
    }

    void tabKeepsASelectionSetBefore()
    {
        Fixture time("##:##", "08:30");
        time.box.setSelection(3, 2);

        QTest::keyClick(time.box.window()->focusWidget(), Qt::Key_Tab);

        QVERIFY(time.box.hasFocus());
        QCOMPARE(time.box.selectedText(), QString("30"));
    }

    void withoutAMaskAnyTextIsAccepted()
    {
        Fixture plain("", "1");
        plain.PutCaret(1);

        QTest::keyClicks(&plain.box, "2 giorni");
        QCOMPARE(plain.box.text(), QString("12 giorni"));

        QTest::keyClick(&plain.box, Qt::Key_Backspace);
        QCOMPARE(plain.box.text(), QString("12 giorn"));

        plain.box.setSelection(0, 2);
        plain.box.setSelText("3");
        QCOMPARE(plain.box.text(), QString("3 giorn"));
    }

    void withoutAMaskLineBreaksAreDropped()
    {
        Fixture plain("", "1");
        plain.Select(0, 1);

        plain.Paste("2\r\n3");
        QCOMPARE(plain.box.text(), QString("23"));

        plain.box.setText(QString("4\n5\r6") + QChar::Null + "7");
        QCOMPARE(plain.box.text(), QString("4567"));
    }

    void withoutAMaskUndoWorks()
    {
        Fixture plain("", "1");
        plain.PutCaret(1);
        QTest::keyClicks(&plain.box, "23");

        QTest::keySequence(&plain.box, QKeySequence::Undo);

        QCOMPARE(plain.box.text(), QString("1"));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::mask_edit_test> registered;
#include "mask_edit_test.moc"
