#include "tests/support/activation.h"
#include "tests/support/colours.h"
#include "tests/support/message_probe.h"
#include "tests/support/registered_test.h"
#include "ui/widgets/check_list.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/line_edits.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/selections.h"
#include "ui/widgets/steady_label.h"
#include "ui/widgets/texts.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QDialog>
#include <QFile>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QInputMethodEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <chrono>
#include <memory>

namespace corvrec
{

namespace
{

// Adds test rows with one column, the case itself.
void AddVectors(const char* list, int count)
{
    QTest::addColumn<QJsonValue>("given");
    QFile file(CORVREC_TEST_DATA "/conversions.json");
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).object()[QLatin1String(list)].toArray();
    QCOMPARE(cases.size(), count);
    for (int row = 0; row < count; ++row)
        QTest::addRow("%d", row) << cases.at(row);
}

QString In(const QJsonValue& given)
{
    return given["in"].toString();
}

QString Out(const QJsonValue& given)
{
    return given["out"].toString();
}

template <class Widget>
Widget& Tagged(QWidget& parent, const QString& caption, const QString& tag)
{
    auto* const widget = new Widget(caption, &parent);
    widget->setProperty("tag", tag);
    return *widget;
}

void ShowActive(QWidget& window)
{
    window.show();
    BringToFront(window);
}

void SendWheel(QWidget& widget)
{
    const QPointF middle = widget.rect().center();
    QWheelEvent turn(middle, widget.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &turn);
}

void SendCommit(QWidget& widget, const QString& text)
{
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(&widget, &event);
}

void SendKey(QWidget& widget, const QString& text)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &press);
}

// For tests in which a probe waits in vain.
class ShortPatience
{
public:
    ShortPatience() { MessageProbe::SetPatience(std::chrono::milliseconds(100)); }
    ~ShortPatience() { MessageProbe::SetPatience(std::chrono::seconds(30)); }
    ShortPatience(const ShortPatience&) = delete;
    ShortPatience& operator=(const ShortPatience&) = delete;
};

// Whether the field shows a selection in the theme's colour.
bool ShowsMark(QWidget& field)
{
    const QPalette theme = QApplication::palette();
    return HasColour(field, theme.color(field.isActiveWindow() ? QPalette::Active : QPalette::Inactive,
                                        QPalette::Highlight));
}

// The first field has the focus.
struct TwoFields {
    TwoFields()
    {
        auto* const column = new QVBoxLayout(&window);
        column->addWidget(&first);
        column->addWidget(&second);
        first.setText("first");
        second.setText("second");
        ShowActive(window);
        first.setFocus(Qt::OtherFocusReason);
    }

    QDialog window;
    PlainEdit first;
    PlainEdit second;
};

class PaintCount : public QObject
{
public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }

    int Count() const { return count_; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++count_;
        return QObject::eventFilter(watched, event);
    }

private:
    int count_ = 0;
};

// As on a desktop that adds icons to the buttons of message boxes.
class IconStyle : public QProxyStyle
{
public:
    IconStyle()
        : QProxyStyle("fusion")
    {
    }

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

// A small editor: two fields above three pages with one field each.
struct PagedDialog {
    PagedDialog()
    {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&name);
        layout->addWidget(&pages);
        for (QWidget* const page : {&first, &second, &third}) {
            auto* const pageLayout = new QVBoxLayout(page);
            pages.addTab(page, QString());
            pageLayout->addWidget(new QLabel(page));
        }
        second.layout()->addWidget(&check);
        second.layout()->addWidget(&time);
        third.layout()->addWidget(&group);
        (new QVBoxLayout(&group))->addWidget(&file);
        third.layout()->addWidget(&log);
    }

    QWidget* Focused() const { return window.focusWidget(); }

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

// Records the focus changes within the window: "left" and "got", in order.
class FocusCount : public QObject
{
public:
    explicit FocusCount(QWidget& widget) { widget.installEventFilter(this); }

    QStringList Journal() const { return journal_; }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isFocus = event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut;
        if (isFocus && IsWithinWindow(*static_cast<QFocusEvent*>(event)))
            journal_.append(event->type() == QEvent::FocusIn ? "got" : "left");
        return QObject::eventFilter(watched, event);
    }

private:
    QStringList journal_;
};

void ShowBoxInFrontOf(QWidget& window)
{
    MessageProbe box(Qt::Key_Return);
    ShowMessage(&window, "testo");
    QCOMPARE(box.text(), "testo");
}

} // namespace

class widgets_test : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::Italian, QLocale::Italy));
    }

    // Captions and windows
    void captionsAreSetByTag()
    {
        QDialog window;
        window.setProperty("tag", "701;");
        const QLabel& label = Tagged<QLabel>(window, "x", "703;");
        const QCheckBox& check = Tagged<QCheckBox>(window, "x", "704;9");
        const QRadioButton& option = Tagged<QRadioButton>(window, "x", "708;");
        const QPushButton& button = Tagged<QPushButton>(window, "x", "2;");
        const QGroupBox& group = Tagged<QGroupBox>(window, "x", "707;");

        LocaliseDialog(window);

        QCOMPARE(window.windowTitle(), QString("Corvane Recorder - Configurazione"));
        QCOMPARE(label.text(), QString("&Codice"));
        QCOMPARE(check.text(), QString("Sito &abilitato"));
        QCOMPARE(option.text(), QString("Collegamento &locale"));
        QCOMPARE(button.text(), QString("Annulla"));
        QCOMPARE(group.title(), QString("Tipo di collegamento"));
    }

    void captionsWithoutAUsableTagStay()
    {
        QDialog window;
        window.setWindowTitle("drawn");
        window.setProperty("tag", "abc;");
        const QLabel untagged("drawn", &window);
        const QLabel& first = Tagged<QLabel>(window, "drawn", ";703");
        const QLabel& bare = Tagged<QLabel>(window, "drawn", "703");
        const QLabel& negative = Tagged<QLabel>(window, "drawn", "-703;");
        const QLabel& missing = Tagged<QLabel>(window, "drawn", "9999;");

        LocaliseDialog(window);

        QCOMPARE(window.windowTitle(), QString("drawn"));
        for (const QLabel* const label : {&untagged, &first, &bare, &negative, &missing})
            QCOMPARE(label->text(), QString("drawn"));
    }

    void tabCaptionsComeFromOneText()
    {
        PagedDialog dialog;
        dialog.pages.setProperty("tag", "705;");

        LocaliseDialog(dialog.window);

        QCOMPARE(dialog.pages.tabText(0), QString("Connessione"));
        QCOMPARE(dialog.pages.tabText(1), QString("Acquisizione"));
        QCOMPARE(dialog.pages.tabText(2), QString("File"));
    }

    void fieldsAndListsHaveNoCaption()
    {
        QDialog window;
        const QLineEdit& field = Tagged<QLineEdit>(window, "typed", "703;");
        QComboBox list(&window);
        list.addItem("Pabx");
        list.setProperty("tag", "703;");

        LocaliseDialog(window);

        QCOMPARE(field.text(), QString("typed"));
        QCOMPARE(list.currentText(), QString("Pabx"));
    }

    void anOwnedDialogKeepsItsCaptions()
    {
        QDialog window;
        QDialog owned(&window);
        const QLabel& label = Tagged<QLabel>(owned, "set at run time", "703;");

        LocaliseDialog(window);

        QCOMPARE(label.text(), QString("set at run time"));
    }

    void toolTipsAreSetByTheirProperty()
    {
        QDialog window;
        QLineEdit field(&window);
        field.setProperty("suggerimento", "20143;");
        QLineEdit missing(&window);
        missing.setProperty("suggerimento", "9999;");

        LocaliseDialog(window);

        QCOMPARE(QTextDocumentFragment::fromHtml(field.toolTip()).toPlainText(),
                 QString("I comandi che riportano il modem ai valori di partenza, di solito &F."));
        QCOMPARE(field.accessibleDescription(),
                 QString("I comandi che riportano il modem ai valori di partenza, di solito &F."));
        QCOMPARE(missing.toolTip(), QString());
    }

    void aLabelHasTheToolTipOfItsField()
    {
        QDialog window;
        QLabel& label = Tagged<QLabel>(window, "x", "703;");
        QLineEdit field(&window);
        field.setProperty("suggerimento", "20105;");
        label.setBuddy(&field);

        LocaliseDialog(window);

        QVERIFY(!field.toolTip().isEmpty());
        QCOMPARE(label.toolTip(), field.toolTip());
        QCOMPARE(label.text(), QString("&Codice"));
    }

    void aLongToolTipBreaksItsLines()
    {
        QDialog window;
        QLineEdit field(&window);
        field.setProperty("suggerimento", "20112;"); // the longest tool tip
        LocaliseDialog(window);
        const QString line = field.accessibleDescription();
        window.show();

        QToolTip::showText(field.mapToGlobal(QPoint()), field.toolTip(), &field);

        const auto windows = QApplication::topLevelWidgets();
        const auto tip = std::ranges::find_if(windows, [](const QWidget* each) {
            return each->isVisible() && each->windowType() == Qt::ToolTip;
        });
        QVERIFY(tip != windows.end());
        QVERIFY((*tip)->width() < (*tip)->fontMetrics().horizontalAdvance(line));
        QToolTip::hideText();
    }

    void aWindowIsCentredOnTheWholeScreen()
    {
        QDialog window;
        (new QVBoxLayout(&window))->addWidget(new QLabel("Connessione in corso.."));

        CentreDialog(window);

        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QCOMPARE(window.size(), window.sizeHint());
        QCOMPARE(window.x(), screen.x() + (screen.width() - window.width()) / 2);
        QCOMPARE(window.y(), screen.y() + (screen.height() - window.height()) / 2);

        const QPoint placed = window.pos();
        ShowActive(window);
        QCOMPARE(window.pos(), placed);
    }

    void aWindowIsCentredOnTheScreenOfItsParent()
    {
        if (!IsOffscreen())
            QSKIP("the virtual screen is a single one");
        const QRect right(1024, 100, 1601, 901);
        QCOMPARE(QGuiApplication::screens().at(1)->geometry(), right);
        QDialog parent;
        parent.move(right.topLeft() + QPoint(50, 50));
        ShowActive(parent);
        QDialog window(&parent);
        (new QVBoxLayout(&window))->addWidget(new QLabel("Connessione in corso.."));

        CentreDialog(window);

        QCOMPARE(window.x(), right.x() + (right.width() - window.width()) / 2);
        QCOMPARE(window.y(), right.y() + (right.height() - window.height()) / 2);
    }

    void aCentredWindowIsWiderThanItsTitle()
    {
        QDialog window;
        window.setWindowTitle("Connessione modem");

        CentreDialog(window);

        QVERIFY(window.width() > window.fontMetrics().horizontalAdvance("Connessione modem"));
        QVERIFY(window.sizeHint().width() < window.width()); // only the title needs the width
    }

    void aWindowOfNearlyTheWholeScreenIsShownWhole()
    {
        QDialog window;
        const QSize screen = QGuiApplication::primaryScreen()->availableSize();
        auto* const large = new QFrame(&window);
        (new QVBoxLayout(&window))->addWidget(large);
        large->setMinimumSize(screen * 9 / 10 - QSize(30, 30)); // the window's margins

        CentreDialog(window);
        ShowActive(window);

        QCOMPARE(window.size(), window.sizeHint());
        QVERIFY(window.findChildren<QScrollArea*>().isEmpty());
        QTRY_VERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(window.frameGeometry()));
    }

    void contentsThatAreTooLargeGetScrollBars()
    {
        QDialog window;
        auto* const column = new QVBoxLayout(&window);
        auto* const first = new QLineEdit(&window); // has the focus when the window opens
        auto* const large = new QFrame(&window);
        large->setMinimumHeight(2 * QGuiApplication::primaryScreen()->size().height());
        auto* const field = new QLineEdit(&window);
        auto* const ok = new QPushButton("OK", &window);
        column->addWidget(first);
        column->addWidget(large);
        column->addWidget(field);
        auto* const buttons = new QHBoxLayout;
        buttons->addWidget(ok);
        column->addLayout(buttons);

        CentreDialog(window);
        ShowActive(window);

        QTRY_VERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(window.frameGeometry()));
        QCOMPARE(ok->visibleRegion().boundingRect(), ok->rect());
        QVERIFY(field->visibleRegion().isEmpty());
        FocusField(*field);
        QCOMPARE(field->visibleRegion().boundingRect(), field->rect());
    }

    void aWindowIsNoLargerThanTheScreen()
    {
        const QScreen* const screen = QGuiApplication::primaryScreen();
        QDialog window;
        auto* const wide = new QLabel(QString(4000, u'x'));
        (new QVBoxLayout(&window))->addWidget(wide);
        wide->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        window.setMinimumHeight(screen->size().height() + 100); // larger than the screen

        CentreDialog(window);

        QVERIFY(window.width() <= screen->availableSize().width());
        QCOMPARE(window.y(), screen->geometry().y());
    }

    void aSelectionIsPaintedInTheFieldWithTheFocusOnly()
    {
        TwoFields fields;
        const QImage unmarked = fields.second.grab().toImage();

        fields.second.selectAll();

        QCOMPARE(fields.second.selectedText(), QString("second"));
        QCOMPARE(fields.second.grab().toImage(), unmarked);
        QVERIFY(!ShowsMark(fields.second));
        fields.first.selectAll();
        QVERIFY(ShowsMark(fields.first));

        fields.second.setFocus(Qt::OtherFocusReason);
        QVERIFY(ShowsMark(fields.second));
        fields.first.selectAll();
        QVERIFY(!ShowsMark(fields.first));
    }

    void aSelectionStaysPaintedWhileAnotherWindowIsInFront()
    {
        TwoFields fields;
        fields.first.selectAll();
        QDialog other;

        ShowActive(other);

        QTRY_VERIFY(!fields.window.isActiveWindow());
        QVERIFY(ShowsMark(fields.first));
    }

    void aSelectionDisappearsWhenTheFocusMovesBehindAnotherWindow()
    {
        TwoFields fields;
        fields.first.selectAll();
        QDialog other;
        ShowActive(other);
        QTRY_VERIFY(!fields.window.isActiveWindow());

        fields.second.setFocus(Qt::OtherFocusReason);
        other.hide();
        ShowActive(fields.window);

        fields.second.selectAll();
        QVERIFY(ShowsMark(fields.second));
        fields.first.selectAll();
        QVERIFY(!ShowsMark(fields.first));
    }

    void hidingASelectionSendsNothing()
    {
        TwoFields fields;
        fields.first.selectAll();
        fields.second.selectAll();
        const QSignalSpy selections(&fields.second, &QLineEdit::selectionChanged);
        const QSignalSpy texts(&fields.second, &QLineEdit::textChanged);
        PaintCount paints(fields.second);

        fields.second.setFocus(Qt::OtherFocusReason);
        QTRY_VERIFY(paints.Count() > 0);
        QCoreApplication::processEvents();
        const int settled = paints.Count();
        for (int pass = 0; pass < 10; ++pass)
            QCoreApplication::processEvents();

        QCOMPARE(selections.count(), 0);
        QCOMPARE(texts.count(), 0);
        QCOMPARE(paints.Count(), settled); // painting must not cause another painting
    }

    void aReadableFieldKeepsTheTextColourWhenItIsDisabled()
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
        QVERIFY(HasColour(fields.second, light.color(QPalette::Active, QPalette::Text)));
        QApplication::setPalette(dark);
        QCoreApplication::processEvents();
        const bool followsTheme = HasColour(fields.second, QColor(250, 240, 230));
        QApplication::setPalette(light);
        QCoreApplication::processEvents();
        QVERIFY(followsTheme);
        QVERIFY(HasColour(fields.second, light.color(QPalette::Active, QPalette::Text)));
    }

    void aFieldIsAsWideAsItsWidestText()
    {
        TwoFields fields;
        const int byQt = fields.first.sizeHint().width();

        fields.first.setWidestText("00:00");

        const int text = fields.first.fontMetrics().horizontalAdvance("00:00");
        QTRY_COMPARE(fields.first.width(), fields.first.sizeHint().width());
        QVERIFY(fields.first.width() > text);
        QVERIFY(fields.first.width() < 2 * text);
        QVERIFY(fields.first.width() < byQt);
        // The whole text is visible: the caret at the end does not scroll it.
        fields.first.setText("00:00");
        fields.first.home(false);
        const QRect atTheBegin = fields.first.inputMethodQuery(Qt::ImCursorRectangle).toRect();
        fields.first.end(false);
        const QRect atTheEnd = fields.first.inputMethodQuery(Qt::ImCursorRectangle).toRect();
        QCOMPARE(atTheEnd.left() - atTheBegin.left(), text);
    }

    void aSteadyLabelIsAsWideAsItsWidestText()
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

    void theButtonOfAMessageLooksLikeAllOthers()
    {
        QApplication::setStyle(new IconStyle); // owned by the application from now on
        bool hasIcon = true;
        QString caption;
        MessageProbe message(Qt::Key_Return, [&] {
            const auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            const QAbstractButton* const button = box->buttons().constFirst();
            hasIcon = !button->icon().isNull();
            caption = button->text();
        });

        ShowMessage(nullptr, "Manca il numero");
        QApplication::setStyle("fusion");

        QVERIFY(!hasIcon);
        QCOMPARE(caption, QString("OK"));
    }

    void aFieldOnAnotherPageIsShownAndGetsTheFocus()
    {
        PagedDialog dialog;
        ShowActive(dialog.window);
        dialog.name.setFocus();

        FocusField(dialog.file);

        QCOMPARE(dialog.pages.currentIndex(), 2);
        QCOMPARE(dialog.Focused(), &dialog.file);

        FocusField(dialog.name);
        QCOMPARE(dialog.pages.currentIndex(), 2);
        QCOMPARE(dialog.Focused(), &dialog.name);
    }

    void aFieldThatCannotTakeTheFocusLeavesItToTheFirstOfItsPage_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("before the first show") << false;
        QTest::newRow("shown") << true;
    }

    void aFieldThatCannotTakeTheFocusLeavesItToTheFirstOfItsPage()
    {
        QFETCH(const bool, shown);
        PagedDialog dialog;
        if (shown)
            ShowActive(dialog.window);

        dialog.time.setEnabled(false);
        FocusField(dialog.time);
        QCOMPARE(dialog.pages.currentIndex(), 1);
        QCOMPARE(dialog.Focused(), &dialog.check);

        dialog.file.hide();
        FocusField(dialog.file);
        QCOMPARE(dialog.pages.currentIndex(), 2);
        QCOMPARE(dialog.Focused(), &dialog.log);

        dialog.file.show();
        dialog.group.setEnabled(false);
        FocusField(dialog.file);
        QCOMPARE(dialog.Focused(), &dialog.log);
    }

    void aDisabledFieldOutsideThePagesLeavesTheFocusToTheFirstOfTheWindow()
    {
        PagedDialog dialog;
        ShowActive(dialog.window);
        dialog.name.setEnabled(false);

        FocusField(dialog.name);

        QCOMPARE(dialog.Focused(), dialog.pages.tabBar());
    }

    void movedFocusSendsItsEventsOnce_data()
    {
        QTest::addColumn<bool>("afterABox");
        QTest::newRow("in the active window") << false;
        QTest::newRow("after a message box") << true;
    }

    // With a window manager, the dialog is not yet active when its message box has closed.
    void movedFocusSendsItsEventsOnce()
    {
        QFETCH(const bool, afterABox);
        PagedDialog dialog;
        ShowActive(dialog.window);
        dialog.name.setFocus();
        const FocusCount name(dialog.name);
        const FocusCount file(dialog.file);
        if (afterABox)
            ShowBoxInFrontOf(dialog.window);

        FocusField(dialog.file);
        QCOMPARE(name.Journal(), QStringList({"left"}));
        QCOMPARE(file.Journal(), QStringList({"got"}));
        ShowActive(dialog.window);

        QCOMPARE(QApplication::focusWidget(), &dialog.file);
        QCOMPARE(name.Journal(), QStringList({"left"}));
        QCOMPARE(file.Journal(), QStringList({"got"}));
    }

    void fieldThatKeepsTheFocusIsNotLeft_data() { movedFocusSendsItsEventsOnce_data(); }

    void fieldThatKeepsTheFocusIsNotLeft()
    {
        QFETCH(const bool, afterABox);
        PagedDialog dialog;
        ShowActive(dialog.window);
        dialog.name.setFocus();
        const FocusCount name(dialog.name);
        if (afterABox)
            ShowBoxInFrontOf(dialog.window);

        FocusField(dialog.name);
        ShowActive(dialog.window);

        QCOMPARE(name.Journal(), QStringList({"got"}));
    }

    void theFirstControlInTabOrderGetsTheFocus()
    {
        QDialog window;
        QLabel label("x", &window);
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

    void theBusyPointerEndsWithItsGuard()
    {
        QWidget first;
        QWidget second;
        {
            BusyPointer busy({&first, &second});
            QCOMPARE(first.cursor().shape(), Qt::WaitCursor);
            QCOMPARE(second.cursor().shape(), Qt::WaitCursor);

            busy.Restore();
            QCOMPARE(first.cursor().shape(), Qt::ArrowCursor);

            first.setCursor(Qt::CrossCursor);
        }
        QCOMPARE(first.cursor().shape(), Qt::CrossCursor); // restored only once
        {
            const BusyPointer busy({&second});
        }
        QCOMPARE(second.cursor().shape(), Qt::ArrowCursor);
    }

    void theBusyPointerOutlivesItsWindow()
    {
        auto window = std::make_unique<QWidget>();
        QWidget other;
        {
            const BusyPointer busy({window.get(), &other});
            window.reset();
        }
        QCOMPARE(other.cursor().shape(), Qt::ArrowCursor);
    }

    // Messages
    void aMessageShowsItsTextAndAnOkButton()
    {
        MessageProbe message(Qt::Key_Return);

        ShowMessage(nullptr, "Impossibile leggere\rErrore", MessageIcon::stop, "Errore");

        QCOMPARE(message.text(), QString("Impossibile leggere\nErrore"));
        QCOMPARE(message.title(), QString("Errore"));
        QCOMPARE(message.icon(), QMessageBox::Critical);
        QCOMPARE(message.buttons(), QStringList({"OK"}));
    }

    void aMessageWithoutATitleShowsTheApplications()
    {
        MessageProbe message("OK");

        ShowMessage(nullptr, "testo");

        QCOMPARE(message.title(), QString("Configurazione Corvane Recorder"));
        QCOMPARE(message.icon(), QMessageBox::Warning);
    }

    void aMessageIsPlainTextThatCanBeCopied()
    {
        QString shown;
        MessageProbe message(Qt::Key_Escape, [&] {
            auto* const label = QApplication::activeModalWidget()->findChild<QLabel*>("qt_msgbox_label");
            QVERIFY(label);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QCOMPARE(label->textInteractionFlags(), Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
            QVERIFY(QApplication::activeModalWidget()->focusWidget() != label);
            QWidget* const box = QApplication::activeModalWidget();
            QTest::keyClick(box->focusWidget(), Qt::Key_Tab);
            QCOMPARE(box->focusWidget(), label);
            QTest::keySequence(label, QKeySequence::SelectAll);
            QTest::keySequence(label, QKeySequence::Copy);
            shown = QApplication::clipboard()->text();
        });

        ShowMessage(nullptr, "Sito <b>A&B</b>\r2");

        QCOMPARE(message.text(), QString("Sito <b>A&B</b>\n2"));
        QCOMPARE(shown, QString("Sito <b>A&B</b>\n2"));
    }

    void aQuestionIsAnsweredByItsButtons()
    {
        MessageProbe yes("Sì");
        MessageProbe no("No");

        QVERIFY(AskYesNo(nullptr, "Si desidera continuare?", MessageIcon::information, "Setup"));
        QVERIFY(!AskYesNo(nullptr, "Si desidera continuare?", MessageIcon::exclamation, {}));

        QCOMPARE(yes.text(), QString("Si desidera continuare?"));
        QCOMPARE(yes.title(), QString("Setup"));
        QCOMPARE(yes.icon(), QMessageBox::Information);
        QCOMPARE(yes.buttons(), QStringList({"Sì", "No"}));
        QCOMPARE(no.title(), QString("Configurazione Corvane Recorder"));
        QCOMPARE(no.icon(), QMessageBox::Warning);
    }

    void returnAnswersYesAndEscapeNo()
    {
        MessageProbe yes(Qt::Key_Return);
        QVERIFY(AskYesNo(nullptr, "?", MessageIcon::exclamation, {}));

        MessageProbe no(Qt::Key_Escape);
        QVERIFY(!AskYesNo(nullptr, "?", MessageIcon::exclamation, {}));
    }

    void aQuestionBelongsToTheWindowThatAsks()
    {
        QDialog window;
        ShowActive(window);
        const QWidget* parent = nullptr;
        MessageProbe question(Qt::Key_Escape,
                              [&] { parent = QApplication::activeModalWidget()->parentWidget(); });

        AskYesNo(&window, "?", MessageIcon::exclamation, {});

        QCOMPARE(parent, &window);
    }

    void probesAnswerInTheOrderInWhichTheyWereArmed()
    {
        MessageProbe first(Qt::Key_Return);
        MessageProbe second(Qt::Key_Return);

        ShowMessage(nullptr, "uno");
        ShowMessage(nullptr, "due");

        QCOMPARE(first.text(), QString("uno"));
        QCOMPARE(second.text(), QString("due"));
    }

    void aProbeReportsAMessageThatDoesNotAppear()
    {
        const ShortPatience shortPatience;
        QEXPECT_FAIL("", "no message is shown on purpose", Continue);
        const MessageProbe message(Qt::Key_Return);
    }

    void aProbeReportsAMessageThatNobodyExpects()
    {
        MessageProbe message(Qt::Key_Return);
        ShowMessage(nullptr, "expected");

        QEXPECT_FAIL("", "a second message is shown on purpose", Continue);
        ShowMessage(nullptr, "unexpected");

        QCOMPARE(message.text(), QString("expected"));
    }

    void aProbeReportsAMissingButton()
    {
        MessageProbe message("Annulla");
        QEXPECT_FAIL("", "the button is missing on purpose", Continue);
        ShowMessage(nullptr, "testo");
    }

    void aProbeReportsAKeyThatDoesNotAnswer()
    {
        const ShortPatience shortPatience;
        MessageProbe message(Qt::Key_Shift);
        QEXPECT_FAIL("", "the key is no answer on purpose", Continue);
        ShowMessage(nullptr, "testo");
    }

    // Lists
    void aFilledListHasNoChoiceAndRunsNoRule()
    {
        QComboBox list;
        const QSignalSpy changes(&list, &QComboBox::currentIndexChanged);

        FillList(list, {"19200", "9600"});

        QCOMPARE(list.count(), 2);
        QCOMPARE(list.currentIndex(), -1);
        QCOMPARE(list.currentText(), QString());
        QVERIFY(changes.isEmpty());
    }

    void aFilledListForgetsItsChoice()
    {
        QComboBox list;
        list.addItems({"19200", "9600"});
        list.setCurrentIndex(1);
        const QSignalSpy changes(&list, &QComboBox::currentIndexChanged);

        FillList(list, {"1", "2", "3"});

        QCOMPARE(list.count(), 3);
        QCOMPARE(list.currentIndex(), -1);
        QVERIFY(changes.isEmpty());
    }

    void codeTablesGiveTheirShownTexts()
    {
        QCOMPARE(ShownTexts(kHandshakes), QStringList({"Nessuno", "Software", "Hardware"}));
        QCOMPARE(ShownTexts(kParities), QStringList({"Nessuna", "Pari", "Dispari"}));
        QCOMPARE(ShownTexts(kDevices), QStringList({"Pabx", "Buffer", "Stratobox 1.1", "Stratobox 2.0",
                                                    "Stratobox 3.0", "Stratobox Buffer"}));
    }

    void aRowIsSetSilently()
    {
        QComboBox list;
        FillList(list, {"7", "8"});
        const QSignalSpy changes(&list, &QComboBox::currentIndexChanged);

        SetRow(list, 1);
        QCOMPARE(list.currentIndex(), 1);
        SetRow(list, -1);
        QCOMPARE(list.currentIndex(), -1);

        QVERIFY(changes.isEmpty());
    }

    void aSelectedRowRunsItsRuleEachTime()
    {
        QComboBox list;
        FillList(list, {"Pabx", "Buffer"});
        FormWithRule form;

        SelectRow(list, 1, form, &FormWithRule::Rule);
        QCOMPARE(form.runs, 1);
        SelectRow(list, 1, form, &FormWithRule::Rule);
        QCOMPARE(form.runs, 2);
        QCOMPARE(list.currentIndex(), 1);
    }

    void selectsByPrefix_data() { AddVectors("select_by_prefix", 20); }

    void selectsByPrefix()
    {
        QFETCH(const QJsonValue, given);
        QComboBox list;
        FillList(list, given["items"].toVariant().toStringList());
        SetRow(list, given["before"].toInt());

        SelectByPrefix(list, given["text"].toString());

        QCOMPARE(list.currentIndex(), given["after"].toInt());
    }

    void selectingByPrefixRunsNoRule()
    {
        QComboBox list;
        FillList(list, {"19200", "9600"});
        const QSignalSpy changes(&list, &QComboBox::currentIndexChanged);

        SelectByPrefix(list, "96");

        QCOMPARE(list.currentIndex(), 1);
        QVERIFY(changes.isEmpty());
    }

    void theWheelMovesAListOnlyWithTheFocus()
    {
        QDialog window;
        QVBoxLayout layout(&window);
        QLineEdit field;
        QComboBox list;
        layout.addWidget(&field);
        layout.addWidget(&list);
        FillList(list, {"1", "2", "3"});
        SetRow(list, 0);
        GuardWheel(window);
        ShowActive(window);

        field.setFocus();
        SendWheel(list);
        QCOMPARE(list.currentIndex(), 0);
        QVERIFY(field.hasFocus());

        list.setFocus();
        SendWheel(list);
        QCOMPARE(list.currentIndex(), 1);
    }

    void aClickOnARowChangesItsMark()
    {
        CheckList list;
        list.addItems({"Lunedì", "Martedì", "Mercoledì"});
        ShowActive(list);
        const auto clickAt = [&](int row, bool text) {
            const QRect place = list.visualItemRect(list.item(row));
            const QPoint spot(text ? place.right() - 2 : place.left() + 8, place.center().y());
            QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, spot);
        };

        clickAt(1, true);
        QVERIFY(list.Marked(1));
        QCOMPARE(list.currentRow(), 1);
        clickAt(1, true);
        QVERIFY(!list.Marked(1));

        clickAt(2, false); // on the check box itself
        QVERIFY(list.Marked(2));
        clickAt(2, false);
        QVERIFY(!list.Marked(2));

        const QPoint onText = list.visualItemRect(list.item(0)).center();
        QTest::mouseClick(list.viewport(), Qt::RightButton, {}, onText);
        QVERIFY(!list.AnyMarked());
    }

    void spaceChangesTheMarkOfTheCurrentRow()
    {
        CheckList list;
        list.addItems({"Lunedì", "Martedì"});
        ShowActive(list);
        list.setCurrentRow(1);

        QTest::keyClick(&list, Qt::Key_Space);
        QVERIFY(list.Marked(1));
        QVERIFY(!list.Marked(0));

        QTest::keyClick(&list, Qt::Key_Space);
        QVERIFY(!list.AnyMarked());
    }

    void marksAreKeptWhileTheListIsHidden()
    {
        CheckList list;
        list.addItems({"Lunedì", "Martedì"});
        list.SetMarked(1, true);

        list.show();
        list.hide();
        QVERIFY(list.Marked(1));
        QVERIFY(list.AnyMarked());

        list.show();
        QVERIFY(list.Marked(1));
        QVERIFY(!list.Marked(0));
    }

    void aListAddsItsRowsWithoutMarks()
    {
        CheckList list;
        list.addItems({"Lunedì", "Martedì"});
        list.SetMarked(0, true);
        list.addItem("Mercoledì");

        QVERIFY(list.Marked(0));
        QVERIFY(!list.Marked(1));
        QVERIFY(!list.Marked(2));
        QCOMPARE(list.item(2)->data(Qt::CheckStateRole).toInt(),
                 static_cast<int>(Qt::Unchecked)); // it has a check box
        QCOMPARE(list.currentRow(), -1);
    }

    // Text boxes
    void aPlainBoxDropsLineBreaks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("taken");
        QTest::newRow("line feed") << "a\nb"
                                   << "ab";
        QTest::newRow("carriage return") << "a\rb"
                                         << "ab";
        QTest::newRow("both") << "\r\na\r\nb\r\n"
                              << "ab";
        QTest::newRow("NUL") << QString("a") + QChar::Null + "b"
                             << "ab";
        QTest::newRow("nothing else") << "\r\n"
                                      << "";
    }

    void aPlainBoxDropsLineBreaks()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, taken);
        PlainEdit box;

        box.setText(text);
        QCOMPARE(box.text(), taken);

        box.clear();
        box.insert(text);
        QCOMPARE(box.text(), taken);

        box.clear();
        QApplication::clipboard()->setText(text);
        box.paste();
        QCOMPARE(box.text(), taken);

        box.clear();
        SendCommit(box, text);
        QCOMPARE(box.text(), taken);
    }

    void theCaretStaysWhereAPasteEnds()
    {
        PlainEdit box;
        box.setText("inizio fine");
        box.setCursorPosition(7);

        box.insert("a\r\nb\r\n");

        QCOMPARE(box.text(), QString("inizio abfine"));
        QCOMPARE(box.cursorPosition(), 9);
    }

    void otherControlCharactersStay()
    {
        PlainEdit box;

        box.setText("a\tb\x01");

        QCOMPARE(box.text(), QString("a\tb\x01"));
    }

    void onlyDigitsCanBeTyped()
    {
        DigitsEdit box;

        QTest::keyClicks(&box, "1a2 .,-+eE3");
        SendKey(box, "\u0663"); // a digit of another script
        SendKey(box, "\u200d");
        SendKey(box, "4");

        QCOMPARE(box.text(), QString("1234"));
    }

    void controlKeysExceptCutAreDropped_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("expected");
        QTest::newRow("cut") << Qt::Key_X << "3";
        QTest::newRow("copy") << Qt::Key_C << "123";
        QTest::newRow("paste") << Qt::Key_V << "123";
        QTest::newRow("undo") << Qt::Key_Z << "123";
        QTest::newRow("delete to the end") << Qt::Key_K << "123";
    }

    void controlKeysExceptCutAreDropped()
    {
        QFETCH(const Qt::Key, key);
        QFETCH(const QString, expected);
        QApplication::clipboard()->setText("9");
        DigitsEdit box;
        QTest::keyClicks(&box, "123");
        box.setSelection(0, 2);

        QTest::keyClick(&box, key, Qt::ControlModifier);

        QCOMPARE(box.text(), expected);
        QCOMPARE(QApplication::clipboard()->text(), key == Qt::Key_X ? QString("12") : QString("9"));
    }

    void editingKeysPassTheFilter()
    {
        DigitsEdit box;
        QTest::keyClicks(&box, "12345");

        QTest::keyClick(&box, Qt::Key_Backspace);
        QCOMPARE(box.text(), QString("1234"));

        QTest::keyClick(&box, Qt::Key_Home);
        QTest::keyClick(&box, Qt::Key_Delete);
        QCOMPARE(box.text(), QString("234"));

        QTest::keyClick(&box, Qt::Key_End);
        QTest::keyClick(&box, Qt::Key_Left);
        QTest::keyClicks(&box, "9");
        QCOMPARE(box.text(), QString("2394"));
    }

    void textThatIsNotTypedIsNotFiltered()
    {
        DigitsEdit box;

        box.setText("dieci");
        QCOMPARE(box.text(), QString("dieci"));

        box.clear();
        QApplication::clipboard()->setText("1a\n2");
        QTest::keyClick(&box, Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(box.text(), QString("1a2"));

        box.clear();
        box.paste(); // as the context menu does
        QCOMPARE(box.text(), QString("1a2"));
    }

    void inputMethodsAreFilteredLikeTyping()
    {
        DigitsEdit box;
        SendCommit(box, "1a2\u0663");
        QCOMPARE(box.text(), QString("12"));

        box.selectAll();
        QInputMethodEvent replacement;
        replacement.setCommitString("abc", -2, 2);
        QApplication::sendEvent(&box, &replacement);
        QCOMPARE(box.text(), QString("12"));
    }

    void returnInADigitsBoxPressesTheDefaultButton()
    {
        QDialog window;
        DigitsEdit box(&window);
        QPushButton ok("OK", &window);
        ok.setDefault(true);
        ShowActive(window);
        box.setFocus();
        const QSignalSpy clicks(&ok, &QPushButton::clicked);

        QTest::keyClick(&box, Qt::Key_Return);

        QCOMPARE(clicks.count(), 1);
    }

    // Paths and texts
    void capitalisesAfterASeparator_data() { AddVectors("capitalise_after_separator", 15); }
    void capitalisesAfterASeparator()
    {
        QFETCH(const QJsonValue, given);

        const QChar separator = given["separator"].toString().front();
        QCOMPARE(CapitaliseAfter(given["text"].toString(), separator), Out(given));
    }

    void properCasesAPath_data() { AddVectors("proper_case_path", 11); }
    void properCasesAPath()
    {
        QFETCH(const QJsonValue, given);

        QCOMPARE(ProperCasePath(In(given)), Out(given));
    }

    void joinsPaths_data() { AddVectors("join_path", 15); }
    void joinsPaths()
    {
        QFETCH(const QJsonValue, given);
        QString directory = given["directory"].toString();

        const QString joined =
            JoinPath(given["file"].toString(), directory, given["own_directory"].toString());

        QCOMPARE(joined, Out(given));
        QCOMPARE(directory, given["directory_after"].toString());
    }

    void trimsBlanks_data() { AddVectors("trim", 8); }
    void trimsBlanks()
    {
        QFETCH(const QJsonValue, given);

        QCOMPARE(TrimBlanks(In(given)), Out(given));
    }

    void upperCases_data() { AddVectors("upper_case", 8); }
    void upperCases()
    {
        QFETCH(const QJsonValue, given);

        QCOMPARE(UpperCase(In(given)), Out(given));
    }

    void wordsEndAtBlanksAndLineEndsOnly()
    {
        QCOMPARE(ProperCasePath("a.b 1c\td\u00a0e-f'g"), QString("A.b 1c\tD\u00a0e-f'g"));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::widgets_test> registered;

#include "widgets_test.moc"
