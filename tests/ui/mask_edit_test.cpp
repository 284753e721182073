#include "tests/support/activation.h"
#include "tests/support/registered_test.h"
#include "tests/support/text_entry.h"
#include "ui/widgets/mask_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
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
    static void maskAndFormatAreProperties()
    {
        MaskEdit box;

        QVERIFY(box.setProperty("mask", "##:##"));
        QVERIFY(box.setProperty("format", "hh:mm"));
        QCOMPARE(box.mask(), "##:##");
        QCOMPARE(box.format(), "hh:mm");
        QCOMPARE(box.text(), "__:__");
        QCOMPARE(box.displayText(), "__:__");

        box.setMask(""); // a new mask empties the box
        QCOMPARE(box.text(), QString());
        box.setText("1");
        box.setMask("##:##");
        QCOMPARE(box.text(), "__:__");
    }

    static void selectedTextIsReplacedWithoutTheFocus()
    {
        Fixture time("##:##", "__:__");

        time.box.setSelection(0, 2);
        time.box.setSelText("12");
        QCOMPARE(time.box.text(), "12:__");
        QCOMPARE(time.box.cursorPosition(), 3);
        time.box.setSelection(2, 2); // starts at the literal
        time.box.setSelText("34");
        QCOMPARE(time.box.text(), "12:34");
        QVERIFY(!time.box.hasFocus());
    }

    static void selectionsAreClippedToTheText()
    {
        Fixture time("##:##", "08:30");

        time.box.setSelection(0, 2000);
        QCOMPARE(time.box.selectedText(), "08:30");
        time.box.setSelection(3, 2000);
        QCOMPARE(time.box.selectedText(), "30");
        time.box.setSelection(2000, 2000);
        QCOMPARE(time.box.selectedText(), QString());
        QCOMPARE(time.box.cursorPosition(), 5);
        time.box.setSelection(-3, 2);
        QCOMPARE(time.box.selectedText(), "08");
    }

    static void keysEditThePlaces()
    {
        Fixture time("##:##");
        time.PutCaret(0);
        const auto check = [&time](const char* text, int caret) {
            QCOMPARE(time.box.text(), text);
            QCOMPARE(time.box.cursorPosition(), caret);
        };
        const auto type = [&time](const char* keys) { QTest::keyClicks(&time.box, keys); };
        const auto press = [&time](Qt::Key key) { QTest::keyClick(&time.box, key); };

        type("083");
        check("08:3_", 4);
        type("0");
        check("08:30", 5);
        type("7"); // the box is full
        check("08:30", 5);
        time.Select(0, 5);
        type("a /_#.-");
        check("08:30", 0);
        time.Select(0, 5);
        type("9");
        check("9_:__", 1);
        type(":15");
        check("9_:15", 5);

        time.PutCaret(3);
        press(Qt::Key_Backspace); // steps over the literal
        check("9_:15", 1);
        press(Qt::Key_Backspace);
        press(Qt::Key_Backspace);
        check("__:15", 0);
        time.PutCaret(2);
        press(Qt::Key_Delete);
        check("__:_5", 3);

        time.box.setText("11:11");
        time.PutCaret(0);
        type("1"); // the same digit moves the caret
        check("11:11", 1);
        time.PutCaret(0);
        press(Qt::Key_Delete); // one of two equal digits empties its own place
        check("_1:11", 0);
        time.PutCaret(5);
        press(Qt::Key_Backspace);
        check("_1:1_", 4);
        time.Select(1, 3);
        press(Qt::Key_Delete);
        check("__:__", 1);
    }

    static void pasteCutDropAndInputMethodFillThePlaces()
    {
        Fixture time("##:##", "08:30");
        const auto paste = [&time](int length, const char* text) {
            time.Select(0, length);
            time.Paste(text);
            return time.box.text();
        };
        QCOMPARE(paste(5, "ore 9:15\r\n"), "9_:15");
        QCOMPARE(paste(5, "domani"), "9_:15");
        QCOMPARE(paste(2, "\U0001F55807"), "07:15"); // starts with a character outside the basic plane

        time.Select(3, 2);
        QTest::keySequence(&time.box, QKeySequence::Cut);
        QCOMPARE(time.box.text(), "07:__");
        QCOMPARE(QApplication::clipboard()->text(), "15");

        Enter(time.box, "1a2", Entry::inputMethod);
        QCOMPARE(time.box.text(), "12:__");
        QMimeData text;
        text.setText("08:30");
        const QPoint front(0, time.box.height() / 2);
        QDragEnterEvent enter(front, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&time.box, &enter);
        QDropEvent drop(front, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&time.box, &drop);
        QCOMPARE(time.box.text(), "08:30");
    }

    static void undoNeverRestoresATextThatDoesNotFit()
    {
        Fixture time("##:##", "08:30");
        time.PutCaret(0);
        QTest::keyClicks(&time.box, "12");

        for (int presses = 0; presses < 3; ++presses) {
            QTest::keySequence(&time.box, QKeySequence::Undo);
            QCOMPARE(time.box.text(), "12:30");
        }
    }

    static void textsSetThroughTheBaseClassAreFittedToo()
    {
        Fixture time("##:##", "08:30");

        static_cast<QLineEdit&>(time.box).setText("9:15 domani");
        QCOMPARE(time.box.text(), "9_:15");
        time.box.clear();
        QCOMPARE(time.box.text(), "__:__");
    }

    static void onlyFittingTextsAreSignalled()
    {
        Fixture time("##:##", "__:__");
        time.PutCaret(0);
        const QSignalSpy changes(&time.box, &QLineEdit::textChanged);

        QTest::keyClicks(&time.box, "1a2");

        for (const QList<QVariant>& change : changes)
            QVERIFY(QStringList({"1_:__", "12:__"}).contains(change.first().toString()));
        QCOMPARE(changes.last().first().toString(), "12:__");
    }

    static void tabKeepsTheSelectionAsItIs()
    {
        for (const QString selected : {"", "30"}) {
            Fixture time("##:##", "08:30");
            if (!selected.isEmpty())
                time.box.setSelection(3, 2);

            QTest::keyClick(time.box.window()->focusWidget(), Qt::Key_Tab);

            QVERIFY(time.box.hasFocus());
            QCOMPARE(time.box.selectedText(), selected);
        }
    }

    static void fullFieldIsEnteredAtItsStart()
    {
        Fixture time("##:##", "08:30");
        for (const int caret : {5, 3}) {
            time.PutCaret(caret);
            QTest::keyClick(&time.box, Qt::Key_Backtab);
            QVERIFY(!time.box.hasFocus());

            QTest::keyClick(time.box.window()->focusWidget(), Qt::Key_Tab);
            QCOMPARE(time.box.cursorPosition(), caret == 5 ? 0 : caret);
        }
    }

    static void withoutAMaskItIsAPlainBox()
    {
        Fixture plain("", "1");
        plain.PutCaret(1);

        QTest::keyClicks(&plain.box, "2 giorni");
        QCOMPARE(plain.box.text(), "12 giorni");
        QTest::keySequence(&plain.box, QKeySequence::Undo);
        QCOMPARE(plain.box.text(), "1");
        QTest::keyClicks(&plain.box, "23");
        QTest::keyClick(&plain.box, Qt::Key_Backspace);
        QCOMPARE(plain.box.text(), "12");
        plain.box.setSelection(0, 2);
        plain.box.setSelText("3");
        QCOMPARE(plain.box.text(), "3");

        plain.Select(0, 1);
        plain.Paste("2\r\n3");
        QCOMPARE(plain.box.text(), "23");
        plain.box.setText(QString("4\n5\r6") + QChar::Null + "7");
        QCOMPARE(plain.box.text(), "4567");
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::mask_edit_test> registered;
#include "mask_edit_test.moc"
