#include "tests/support/controls.h"
#include "tests/support/message_probe.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "tests/support/text_entry.h"
#include "tests/support/vectors.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/line_edits.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/steady_label.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QGroupBox>
#include <QImage>
#include <QInputMethodEvent>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QVBoxLayout>

#include <chrono>
#include <memory>

namespace corvrec
{

namespace
{

void ShowActive(QWidget& window)
{
    window.show();
    BringToFront(window);
}

void PutInColumn(QWidget& window, std::initializer_list<QWidget*> widgets)
{
    auto* const column = new QVBoxLayout(&window);
    for (QWidget* const widget : widgets)
        column->addWidget(widget);
}

void SendKey(QWidget& widget, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &press);
}

// Whether the field shows a selection in the theme's colour.
bool ShowsMark(QWidget& field)
{
    const auto group = field.isActiveWindow() ? QPalette::Active : QPalette::Inactive;
    return HasColour(field, QApplication::palette().color(group, QPalette::Highlight));
}

// The first field has the focus.
struct TwoFields {
    TwoFields()
    {
        PutInColumn(window, {&first, &second});
        first.setText("first");
        second.setText("second");
        ShowActive(window);
        first.setFocus(Qt::OtherFocusReason);
    }

    QDialog window;
    PlainEdit first;
    PlainEdit second;
};

// A small editor: a field above three pages.
struct PagedDialog {
    PagedDialog()
    {
        PutInColumn(window, {&name, &pages});
        PutInColumn(first, {new QLabel});
        PutInColumn(second, {new QLabel, &check, &time});
        PutInColumn(third, {new QLabel, &group, &log});
        PutInColumn(group, {&file});
        for (QWidget* const page : {&first, &second, &third})
            pages.addTab(page, QString());
    }

    QDialog window;
    QLineEdit name;
    QTabWidget pages;
    QWidget first;
    QWidget second;
    QWidget third;
    QCheckBox check;
    QLineEdit time;
    QGroupBox group;
    QLineEdit file;
    QLineEdit log;
};

// Records events of one widget; of focus changes only those within the window.
class Events : public QObject
{
public:
    Events(QWidget& widget, QList<QEvent::Type> wanted)
        : wanted_(std::move(wanted))
    {
        widget.installEventFilter(this);
    }

    const QList<QEvent::Type>& Seen() const { return seen_; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* const focus = dynamic_cast<QFocusEvent*>(event);
        if (wanted_.contains(event->type()) && (focus == nullptr || IsWithinWindow(*focus)))
            seen_.append(event->type());
        return QObject::eventFilter(watched, event);
    }

private:
    QList<QEvent::Type> wanted_;
    QList<QEvent::Type> seen_;
};

// As on a desktop that adds icons to the buttons of message boxes.
class IconStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override
    {
        return hint == SH_DialogButtonBox_ButtonsHaveIcons
                   ? 1
                   : QProxyStyle::styleHint(hint, option, widget, result);
    }
};

struct FormWithRule {
    void Rule() { ++runs; }

    int runs = 0;
};

} // namespace

class widgets_test : public QObject
{
    Q_OBJECT

private slots:
    // Captions and windows
    static void captionsComeByTag_data()
    {
        QTest::addColumn<QString>("shown");
        QTest::newRow("703;") << "&Codice";
        QTest::newRow("704;9") << "Sito &abilitato";
        for (const char* const unusable : {"", "abc;", ";703", "703", "-703;", "9999;"})
            QTest::newRow(unusable) << "drawn";
    }

    static void captionsComeByTag()
    {
        QFETCH(const QString, shown);
        QDialog window;
        QLabel label(&window);
        QCheckBox check(&window);
        QRadioButton option(&window);
        QPushButton button(&window);
        QGroupBox group(&window);
        const std::vector<std::pair<QWidget*, const char*>> captions{
            {&window, "windowTitle"}, {&label, "text"},  {&check, "text"},
            {&option, "text"},        {&button, "text"}, {&group, "title"}};
        QLineEdit field(&window);
        QDialog owned(&window);
        QLabel ownedLabel(&owned);
        const std::vector<std::pair<QWidget*, const char*>> others{{&field, "text"}, {&ownedLabel, "text"}};
        for (const auto& list : {captions, others}) {
            for (const auto& [widget, caption] : list) {
                widget->setProperty(caption, "drawn");
                widget->setProperty("tag", QTest::currentDataTag());
            }
        }

        LocaliseDialog(window);

        for (const auto& [widget, caption] : captions)
            QCOMPARE(widget->property(caption).toString(), shown);
        for (const auto& [widget, caption] : others)
            QCOMPARE(widget->property(caption).toString(), "drawn");
    }

    static void tabCaptionsComeFromOneText()
    {
        PagedDialog dialog;
        dialog.pages.setProperty("tag", "705;");

        LocaliseDialog(dialog.window);

        QCOMPARE(dialog.pages.tabText(0), "Connessione");
        QCOMPARE(dialog.pages.tabText(1), "Acquisizione");
        QCOMPARE(dialog.pages.tabText(2), "File");
    }

    static void aLongToolTipBreaksItsLines()
    {
        QDialog window;
        QLineEdit field(&window);
        QLineEdit missing(&window);
        field.setProperty(kToolTip, "20112;"); // the longest
        missing.setProperty(kToolTip, "9999;");
        LocaliseDialog(window);
        window.show();

        QToolTip::showText(field.mapToGlobal(QPoint()), field.toolTip(), &field);

        const auto windows = QApplication::topLevelWidgets();
        const auto tip = std::ranges::find_if(windows, [](const QWidget* each) {
            return each->isVisible() && each->windowType() == Qt::ToolTip;
        });
        QVERIFY(tip != windows.end());
        const int oneLine = (*tip)->fontMetrics().horizontalAdvance(field.accessibleDescription());
        QVERIFY((*tip)->width() < oneLine);
        QToolTip::hideText();
        QCOMPARE(missing.toolTip(), QString());
    }

    static void aWindowIsCentredOnItsScreen()
    {
        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QDialog window;
        PutInColumn(window, {new QLabel("Connessione in corso..")});

        CentreDialog(window);

        QCOMPARE(window.size(), window.sizeHint());
        QCOMPARE(window.pos(), screen.topLeft() + QPoint((screen.width() - window.width()) / 2,
                                                         (screen.height() - window.height()) / 2));
        const QPoint placed = window.pos();
        ShowActive(window);
        QCOMPARE(window.pos(), placed);
    }

    static void aWindowIsCentredOnTheScreenOfItsParent()
    {
        if (!IsOffscreen())
            QSKIP("the virtual screen is a single one");
        QVERIFY2(QGuiApplication::screens().size() == 2, "CORVREC_SCREEN: see tests/CMakeLists.txt");
        const QRect right(1024, 100, 1601, 901);
        QCOMPARE(QGuiApplication::screens().at(1)->geometry(), right);
        QDialog parent;
        parent.move(right.topLeft() + QPoint(50, 50));
        ShowActive(parent);
        QDialog window(&parent);
        PutInColumn(window, {new QLabel("Connessione in corso..")});

        CentreDialog(window);

        QCOMPARE(window.x(), right.x() + (right.width() - window.width()) / 2);
        QCOMPARE(window.y(), right.y() + (right.height() - window.height()) / 2);
    }

    static void aCentredWindowIsWiderThanItsTitle()
    {
        QDialog window;
        window.setWindowTitle("Connessione modem");

        CentreDialog(window);

        QVERIFY(window.width() > window.fontMetrics().horizontalAdvance("Connessione modem"));
        QVERIFY(window.sizeHint().width() < window.width()); // only the title needs the width
    }

    static void aWindowIsNoLargerThanTheScreen()
    {
        const QScreen* const screen = QGuiApplication::primaryScreen();
        QDialog window;
        auto* const wide = new QLabel(QString(4000, u'x'));
        PutInColumn(window, {wide});
        wide->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        window.setMinimumHeight(screen->size().height() + 100); // larger than the screen

        CentreDialog(window);

        QVERIFY(window.width() <= screen->availableSize().width());
        QCOMPARE(window.y(), screen->geometry().y());
    }

    // Fields
    static void onlyTheFieldWithTheFocusShowsItsSelection()
    {
        TwoFields fields;
        const QImage unmarked = fields.second.grab().toImage();
        fields.second.selectAll();
        QCOMPARE(fields.second.selectedText(), "second");
        QCOMPARE(fields.second.grab().toImage(), unmarked);
        fields.first.selectAll();
        QVERIFY(ShowsMark(fields.first));

        QDialog other;
        ShowActive(other);
        QTRY_VERIFY(!fields.window.isActiveWindow());
        QVERIFY(ShowsMark(fields.first)); // while another window is in front too

        fields.second.setFocus(Qt::OtherFocusReason);
        other.hide();
        ShowActive(fields.window);
        fields.first.selectAll();
        fields.second.selectAll();
        QVERIFY(!ShowsMark(fields.first));
        QVERIFY(ShowsMark(fields.second));

        fields.first.setFocus(Qt::OtherFocusReason);
        fields.second.selectAll();
        QVERIFY(!ShowsMark(fields.second));
    }

    static void hidingASelectionSendsNothing()
    {
        TwoFields fields;
        fields.first.selectAll();
        fields.second.selectAll();
        const QSignalSpy selections(&fields.second, &QLineEdit::selectionChanged);
        const QSignalSpy texts(&fields.second, &QLineEdit::textChanged);
        const Events paints(fields.second, {QEvent::Paint});

        fields.second.setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(!paints.Seen().isEmpty());
        QCoreApplication::processEvents();
        const auto settled = paints.Seen().size();
        for (int pass = 0; pass < 10; ++pass)
            QCoreApplication::processEvents();

        QCOMPARE(selections.count(), 0);
        QCOMPARE(texts.count(), 0);
        QCOMPARE(paints.Seen().size(), settled); // painting must not cause another painting
    }

    static void aReadableFieldKeepsTheTextColourWhenItIsDisabled()
    {
        TwoFields fields;
        fields.second.setReadableWhenDisabled(true);
        QFont large = fields.second.font();
        large.setPixelSize(60);
        fields.second.setFont(large);
        fields.second.setText("III");
        fields.second.setEnabled(false);

        const QPalette light = QApplication::palette();
        QPalette dark(QColor(40, 44, 52));
        dark.setColor(QPalette::Active, QPalette::Text, QColor(250, 240, 230));
        for (const QPalette& theme : {light, dark, light}) {
            QApplication::setPalette(theme);
            QCoreApplication::processEvents();
            QVERIFY(HasColour(fields.second, theme.color(QPalette::Active, QPalette::Text)));
        }
    }

    static void aSteadyLabelIsAsWideAsItsWidestText()
    {
        SteadyLabel label;
        QLabel widest("settimana/e alle ore");
        label.Reserve({"a", "settimana/e &alle ore", "b"});

        for (const char* const text : {"a", "settimana/e alle ore", ""}) {
            label.setText(text);
            QCOMPARE(label.sizeHint().width(), widest.sizeHint().width());
            QCOMPARE(label.minimumSizeHint().width(), widest.minimumSizeHint().width());
        }
    }

    static void aFieldThatCannotTakeTheFocusPassesItToTheFirstOfItsPage()
    {
        for (const bool shown : {false, true}) {
            PagedDialog dialog;
            if (shown)
                ShowActive(dialog.window);
            const auto check = [&dialog](QWidget& field, int page, const QWidget& focused) {
                FocusField(field);
                QCOMPARE(dialog.pages.currentIndex(), page);
                QCOMPARE(dialog.window.focusWidget(), &focused);
            };

            check(dialog.file, 2, dialog.file);
            check(dialog.name, 2, dialog.name);
            dialog.time.setEnabled(false);
            check(dialog.time, 1, dialog.check);
            dialog.file.hide();
            check(dialog.file, 2, dialog.log);
            dialog.file.show();
            dialog.group.setEnabled(false);
            check(dialog.file, 2, dialog.log);
            dialog.name.setEnabled(false);
            check(dialog.name, 2, *dialog.pages.tabBar());
        }
    }

    // With a window manager, the dialog is not yet active when its message box has closed.
    static void movedFocusSendsItsEventsOnce()
    {
        const QList<QEvent::Type> got{QEvent::FocusIn};
        const QList<QEvent::Type> gotAndLeft{QEvent::FocusIn, QEvent::FocusOut};
        for (const bool afterABox : {false, true}) {
            PagedDialog dialog;
            ShowActive(dialog.window);
            dialog.name.setFocus();
            const Events name(dialog.name, gotAndLeft);
            const Events file(dialog.file, gotAndLeft);
            for (QWidget* const field : {&dialog.name, &dialog.file}) {
                if (afterABox) {
                    const MessageProbe box(Qt::Key_Return);
                    ShowMessage(&dialog.window, "testo");
                }
                FocusField(*field);
                const bool isFile = field == &dialog.file;
                QCOMPARE(name.Seen(), isFile ? gotAndLeft : got); // not left when it keeps the focus
                QCOMPARE(file.Seen(), isFile ? got : QList<QEvent::Type>());
                ShowActive(dialog.window);
            }
            QCOMPARE(QApplication::focusWidget(), &dialog.file);
            QCOMPARE(name.Seen(), gotAndLeft);
            QCOMPARE(file.Seen(), got);
        }
    }

    static void theFirstControlInTabOrderGetsTheFocus()
    {
        QDialog window;
        const QLabel label("x", &window);
        QLineEdit disabled(&window);
        QLineEdit hidden(&window);
        QLineEdit drawnFirst(&window);
        QLineEdit first(&window);
        disabled.setEnabled(false);
        hidden.hide();
        QWidget::setTabOrder(&hidden, &first);
        ShowActive(window);
        drawnFirst.setFocus();

        FocusFirst(window);

        QCOMPARE(window.focusWidget(), &first);
    }

    static void theBusyPointerEndsWithItsGuard()
    {
        auto first = std::make_unique<QWidget>();
        QWidget second;
        {
            BusyPointer busy({first.get(), &second});
            QCOMPARE(first->cursor().shape(), Qt::WaitCursor);
            QCOMPARE(second.cursor().shape(), Qt::WaitCursor);

            busy.Restore();
            QCOMPARE(first->cursor().shape(), Qt::ArrowCursor);
            first->setCursor(Qt::CrossCursor);
        }
        QCOMPARE(first->cursor().shape(), Qt::CrossCursor); // restored only once
        {
            const BusyPointer busy({first.get(), &second});
            first.reset(); // it outlives a window
        }
        QCOMPARE(second.cursor().shape(), Qt::ArrowCursor);
    }

    // Messages
    static void aMessageShowsItsTextAndAnOkButton()
    {
        QApplication::setStyle(new IconStyle("fusion")); // owned by the application from now on
        MessageProbe message(Qt::Key_Return, [] {
            const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box->buttons().constFirst()->icon().isNull());
        });
        MessageProbe untitled("OK");

        ShowMessage(nullptr, "Impossibile leggere\rErrore", MessageIcon::stop, "Errore");
        ShowMessage(nullptr, "testo");
        QApplication::setStyle("fusion");

        QCOMPARE(message.text(), "Impossibile leggere\nErrore");
        QCOMPARE(message.title(), "Errore");
        QCOMPARE(message.icon(), QMessageBox::Critical);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
        QCOMPARE(untitled.text(), "testo");
        QCOMPARE(untitled.title(), "Configurazione Corvane Recorder");
        QCOMPARE(untitled.icon(), QMessageBox::Warning);
    }

    static void aMessageIsPlainTextThatCanBeCopied()
    {
        MessageProbe message(Qt::Key_Escape, [] {
            QWidget* const box = QApplication::activeModalWidget();
            auto* const label = box->findChild<QLabel*>("qt_msgbox_label");
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QCOMPARE(label->textInteractionFlags(), Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
            QVERIFY(box->focusWidget() != label);
            QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
            QCOMPARE(box->focusWidget(), label);
            QTest::keySequence(label, QKeySequence::SelectAll);
            QTest::keySequence(label, QKeySequence::Copy);
        });

        ShowMessage(nullptr, "Sito <b>A&B</b>\r2");

        QCOMPARE(message.text(), "Sito <b>A&B</b>\n2");
        QCOMPARE(QApplication::clipboard()->text(), "Sito <b>A&B</b>\n2");
    }

    static void aQuestionIsAnsweredByItsButtons()
    {
        QDialog window;
        ShowActive(window);
        MessageProbe yes("Sì",
                         [&window] { QCOMPARE(QApplication::activeModalWidget()->parentWidget(), &window); });
        QVERIFY(AskYesNo(&window, "Si desidera continuare?", MessageIcon::information, "Setup"));
        QCOMPARE(yes.text(), "Si desidera continuare?");
        QCOMPARE(yes.title(), "Setup");
        QCOMPARE(yes.icon(), QMessageBox::Information);
        QCOMPARE(yes.buttons(), QStringList({"Sì", "No"}));

        MessageProbe no("No");
        QVERIFY(!AskYesNo(nullptr, "?", MessageIcon::exclamation, {}));
        QCOMPARE(no.title(), "Configurazione Corvane Recorder");
        QCOMPARE(no.icon(), QMessageBox::Warning);

        const MessageProbe byReturn(Qt::Key_Return);
        QVERIFY(AskYesNo(nullptr, "?", MessageIcon::exclamation, {}));
        const MessageProbe byEscape(Qt::Key_Escape);
        QVERIFY(!AskYesNo(nullptr, "?", MessageIcon::exclamation, {}));
    }

    // What other tests rely on.
    // Several times, because it depends on how soon the window manager follows.
    static void theKeyboardReturnsToAWindowWhoseDialogClosesWithItsMessage()
    {
        const FocusReturn focusReturn(*qApp);
        QWidget owner;
        ShowActive(owner);
        for (int round = 0; round < 20; ++round) {
            QDialog dialog(&owner);
            QTimer::singleShot(0, &dialog, [&dialog] {
                QTRY_VERIFY_WITH_TIMEOUT(IsInFront(dialog), kPatienceMs);
                ShowMessage(&dialog, "testo");
                dialog.accept();
            });
            MessageProbe message(Qt::Key_Return, [] { BringToFront(*QApplication::activeModalWidget()); });

            dialog.exec();

            QTRY_VERIFY_WITH_TIMEOUT(IsInFront(owner), kPatienceMs);
        }
    }

    static void aProbeReportsAMessageThatIsMissingUnexpectedOrNotAnswered()
    {
        MessageProbe::SetPatience(std::chrono::milliseconds(100));
        {
            QEXPECT_FAIL("", "no message is shown", Continue);
            const MessageProbe message(Qt::Key_Return);
        }
        {
            MessageProbe message(Qt::Key_Return);
            ShowMessage(nullptr, "expected");
            QEXPECT_FAIL("", "nobody expects the second message", Continue);
            ShowMessage(nullptr, "unexpected");
            QCOMPARE(message.text(), "expected");
        }
        {
            const MessageProbe message("Annulla");
            QEXPECT_FAIL("", "the button is missing", Continue);
            ShowMessage(nullptr, "testo");
        }
        {
            const MessageProbe message(Qt::Key_Shift);
            QEXPECT_FAIL("", "the key is no answer", Continue);
            ShowMessage(nullptr, "testo");
        }
        MessageProbe::SetPatience(std::chrono::seconds(30));
    }

    // Lists
    static void listsAreFilledAndSetWithoutRunningRules()
    {
        QComboBox list;
        list.addItems({"1", "2", "3"});
        list.setCurrentIndex(1);
        const QSignalSpy changes(&list, &QComboBox::currentIndexChanged);

        FillList(list, {"19200", "9600"});
        QCOMPARE(list.count(), 2);
        QCOMPARE(list.currentIndex(), -1);
        QCOMPARE(list.currentText(), QString());
        SetRow(list, 0);
        QCOMPARE(list.currentIndex(), 0);
        SelectByPrefix(list, "96");
        QCOMPARE(list.currentIndex(), 1);
        SetRow(list, -1);
        QCOMPARE(list.currentIndex(), -1);
        QVERIFY(changes.isEmpty());

        FormWithRule form;
        SelectRow(list, 1, form, &FormWithRule::Rule);
        QCOMPARE(form.runs, 1);
        SelectRow(list, 1, form, &FormWithRule::Rule); // runs the rule of the same row again
        QCOMPARE(form.runs, 2);
        QCOMPARE(list.currentIndex(), 1);
    }

    static void selectsByPrefix()
    {
        for (const QJsonValue given : Vectors("select_by_prefix")) {
            QComboBox list;
            FillList(list, given["items"].toVariant().toStringList());
            SetRow(list, given["before"].toInt());

            SelectByPrefix(list, given["text"].toString());

            QVERIFY2(list.currentIndex() == given["after"].toInt(), qPrintable(given["text"].toString()));
        }
    }

    static void aListMarksItsRows()
    {
        CheckList list;
        list.addItems({"Lunedì", "Martedì"});
        list.SetMarked(0, true);
        list.addItem("Mercoledì");
        QCOMPARE(Shown(list), "0");
        QCOMPARE(list.item(2)->data(Qt::CheckStateRole).toInt(), int{Qt::Unchecked}); // it has a check box
        QCOMPARE(list.currentRow(), -1);

        list.show();
        list.hide();
        QCOMPARE(Shown(list), "0");
        ShowActive(list);
        QCOMPARE(Shown(list), "0");

        const auto click = [&list](int row, Qt::MouseButton button, bool onText = true) {
            const QRect place = list.visualItemRect(list.item(row));
            const QPoint spot(onText ? place.right() - 2 : place.left() + 8, place.center().y());
            QTest::mouseClick(list.viewport(), button, {}, spot);
        };
        click(1, Qt::LeftButton);
        QCOMPARE(Shown(list), "0 1");
        QCOMPARE(list.currentRow(), 1);
        click(1, Qt::LeftButton);
        QCOMPARE(Shown(list), "0");
        click(2, Qt::LeftButton, false); // on the check box itself
        QCOMPARE(Shown(list), "0 2");
        click(2, Qt::LeftButton, false);
        QCOMPARE(Shown(list), "0");
        click(0, Qt::RightButton);
        QCOMPARE(Shown(list), "0");

        list.setCurrentRow(0);
        QVERIFY(list.AnyMarked());
        QTest::keyClick(&list, Qt::Key_Space);
        QVERIFY(!list.AnyMarked());
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(Shown(list), "0");
    }

    // Text boxes
    static void aPlainBoxDropsLineBreaks()
    {
        const std::vector<std::pair<QString, QString>> cases{
            {"a\nb", "ab"},
            {"a\rb", "ab"},
            {"\r\na\r\nb\r\n", "ab"},
            {QString("a") + QChar::Null + "b", "ab"},
            {"\r\n", ""},
            {"a\tb\x01", "a\tb\x01"},
        };
        for (const auto& [text, taken] : cases) {
            PlainEdit box;
            box.setText(text);
            QCOMPARE(box.text(), taken);
            for (const Entry way : {Entry::paste, Entry::drop, Entry::inputMethod}) {
                Enter(box, text, way);
                QCOMPARE(box.text(), taken);
            }
        }
        PlainEdit box;
        box.setText("inizio fine");
        box.setCursorPosition(7);
        box.insert("a\r\nb\r\n");
        QCOMPARE(box.text(), "inizio abfine");
        QCOMPARE(box.cursorPosition(), 9);
    }

    static void onlyDigitsCanBeTyped()
    {
        DigitsEdit box;

        QTest::keyClicks(&box, "1a2 .,-+eE3");
        SendKey(box, "\u0663"); // a digit of another script
        SendKey(box, "\u200d");
        SendKey(box, "4");
        QCOMPARE(box.text(), "1234");

        QTest::keyClick(&box, Qt::Key_Backspace);
        QCOMPARE(box.text(), "123");
        QTest::keyClick(&box, Qt::Key_Home);
        QTest::keyClick(&box, Qt::Key_Delete);
        QCOMPARE(box.text(), "23");
        QTest::keyClick(&box, Qt::Key_End);
        QTest::keyClick(&box, Qt::Key_Left);
        QTest::keyClicks(&box, "9");
        QCOMPARE(box.text(), "293");
    }

    static void controlKeysExceptCutAreDropped()
    {
        for (const Qt::Key key : {Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_Z, Qt::Key_K}) {
            QApplication::clipboard()->setText("9");
            DigitsEdit box;
            QTest::keyClicks(&box, "123");
            box.setSelection(0, 2);

            QTest::keyClick(&box, key, Qt::ControlModifier);

            const bool isCut = key == Qt::Key_X;
            QCOMPARE(box.text(), isCut ? "3" : "123");
            QCOMPARE(QApplication::clipboard()->text(), isCut ? "12" : "9");
        }
    }

    static void textThatIsNotTypedIsNotFiltered()
    {
        DigitsEdit box;

        box.setText("dieci");
        QCOMPARE(box.text(), "dieci");
        Enter(box, "1a\n2", Entry::paste);
        QCOMPARE(box.text(), "1a2");
        box.clear();
        box.paste(); // as the context menu does
        QCOMPARE(box.text(), "1a2");
        Enter(box, "1a2\u0663", Entry::inputMethod); // as typed
        QCOMPARE(box.text(), "12");
        QInputMethodEvent replacement;
        replacement.setCommitString("abc", -2, 2);
        QApplication::sendEvent(&box, &replacement);
        QCOMPARE(box.text(), "12");
    }

    // Paths and texts
    static void pathsAndNamesAreConverted()
    {
        using Convert = QString (*)(const QString&);
        const std::vector<std::pair<const char*, Convert>> conversions{
            {"trim", TrimBlanks}, {"upper_case", UpperCase}, {"proper_case_path", ProperCasePath}};
        for (const auto& [list, convert] : conversions) {
            for (const QJsonValue given : Vectors(list))
                QCOMPARE(convert(given["in"].toString()), given["out"].toString());
        }
        for (const QJsonValue given : Vectors("capitalise_after_separator")) {
            const QChar separator = given["separator"].toString().front();
            QCOMPARE(CapitaliseAfter(given["text"].toString(), separator), given["out"].toString());
        }
        // Words end at blanks and line ends only.
        QCOMPARE(ProperCasePath("a.b 1c\td\u00a0e-f'g"), "A.b 1c\tD\u00a0e-f'g");
    }

    static void joinsPaths()
    {
        for (const QJsonValue given : Vectors("join_path")) {
            QString directory = given["directory"].toString();

            const QString joined =
                JoinPath(given["file"].toString(), directory, given["own_directory"].toString());

            QCOMPARE(joined, given["out"].toString());
            QCOMPARE(directory, given["directory_after"].toString());
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::widgets_test> registered;

#include "widgets_test.moc"
