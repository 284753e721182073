// F1 in every window, and the guide that it opens.
#include "core/device/buffer_device.h"
#include "tests/support/all_windows.h"
#include "tests/support/message_probe.h"
#include "tests/support/modal_visit.h"
#include "tests/support/patience.h"
#include "tests/support/registered_test.h"
#include "ui/help/frmGuida.h"
#include "ui/help/guide_view.h"
#include "ui/widgets/dialogs.h"
#include "ui/widgets/messages.h"
#include "ui/widgets/texts.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSet>
#include <QTabWidget>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextTable>
#include <QToolButton>

namespace corvrec
{

namespace
{

template <class Visit>
void ForEachFragment(const QTextDocument& document, Visit visit)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part)
            visit(block, part.fragment());
    }
}

QWidget& GuideWindow()
{
    return WindowNamed("frmGuida");
}

GuideView& View()
{
    return SiteWindow::Part<GuideView>(GuideWindow(), "txtGuida");
}

// The first visible line of the guide.
QString TopLine()
{
    return View().cursorForPosition({0, 0}).block().text();
}

void PressF1(QWidget& window)
{
    QWidget* const focused = window.focusWidget();
    QTest::keyClick(focused != nullptr ? focused : &window, Qt::Key_F1);
}

// Sends the key as the keyboard would: to the window, unless another one blocks it.
void PressIn(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    BringToFront(window);
    QTest::keyClick(window.windowHandle(), key, modifiers);
}

// A caption without its mnemonic mark and its colon.
QString Plain(QString caption)
{
    caption.remove('&');
    return caption.endsWith(':') ? caption.chopped(1) : caption;
}

// Every text that a window can show: those of the string table, and those in controls and lists.
QSet<QString> ShownNames()
{
    QStringList texts;
    for (const QWidget* const widget : QApplication::allWidgets()) {
        texts.append(widget->property("text").toString());
        const auto* const list = qobject_cast<const QComboBox*>(widget);
        for (int row = 0; list != nullptr && row < list->count(); ++row)
            texts.append(list->itemText(row));
    }
    for (int id = 1; id < 30'000; ++id)
        texts.append(FindText(id).split('|'));
    QSet<QString> names;
    for (const QString& each : std::as_const(texts))
        names.insert(Plain(each));
    return names;
}

QString TextOf(const QTextTableCell& cell)
{
    return cell.firstCursorPosition().block().text();
}

// The first table after the heading.
const QTextTable& TableUnder(GuideView& view, const QString& heading)
{
    view.ShowChapter(heading);
    QTextBlock block = view.textCursor().block();
    while (block.isValid() && QTextCursor(block).currentTable() == nullptr)
        block = block.next();
    if (!block.isValid())
        qFatal("no table under %s", qPrintable(heading));
    return *QTextCursor(block).currentTable();
}

// A row of one of the guide's tables: the bold name in the first cell and the text in the second.
using NamedRow = std::pair<QString, QString>;

QSet<NamedRow> NamedRows(GuideView& view, const QString& chapter)
{
    constexpr int kChapterLevel = 2;
    view.ShowChapter(chapter);
    QSet<NamedRow> rows;
    for (QTextBlock block = view.textCursor().block().next(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level > 0 && level <= kChapterLevel)
            break;
        const QTextTable* const table = QTextCursor(block).currentTable();
        if (table == nullptr || table->columns() < 2 || block.begin().atEnd())
            continue;
        const QTextTableCell cell = table->cellAt(block.position());
        if (cell.column() == 0 && block.begin().fragment().charFormat().fontWeight() >= QFont::Bold)
            rows.insert({Plain(block.text()), TextOf(table->cellAt(cell.row(), 1))});
    }
    return rows;
}

// The chapter of the control's page, or else of its window.
QString ChapterOf(const QWidget& control)
{
    QString chapter;
    for (const QWidget* widget = &control; widget != nullptr && chapter.isEmpty();
         widget = widget->isWindow() ? nullptr : widget->parentWidget())
        chapter = widget->property(kGuideChapter).toString();
    return chapter;
}

QString CaptionOf(const QWidget& control)
{
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&control))
        return Plain(button->text());
    const auto labels = control.window()->findChildren<QLabel*>();
    const auto label = std::ranges::find_if(labels, [&control](const QLabel* each) {
        return each->buddy() != nullptr && (each == &control || each->buddy() == &control);
    });
    return label == labels.end() ? control.accessibleName() : Plain((*label)->text());
}

bool IsFieldOrButton(const QWidget& control)
{
    return qobject_cast<const QLineEdit*>(&control) != nullptr ||
           qobject_cast<const QComboBox*>(&control) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&control) != nullptr ||
           (qobject_cast<const QAbstractButton*>(&control) != nullptr &&
            qobject_cast<const QToolButton*>(&control) == nullptr); // the arrows of a tab bar
}

// Calls visit for each named control that has a chapter in the guide. Controls made by Qt have no name.
template <class Visit>
void ForEachPart(Visit visit)
{
    const EditorWindow program(SettingsWith({"A"}));
    const BufferWindow buffer;
    for (const QWidget* const window : QApplication::topLevelWidgets()) {
        for (const QWidget* const part : window->findChildren<QWidget*>()) {
            if (part->window() == window && !part->objectName().isEmpty() && !ChapterOf(*part).isEmpty())
                visit(*part);
        }
    }
}

} // namespace

class guide_test : public QObject
{
    Q_OBJECT

private slots:
    static void f1OpensTheChapterOfTheWindow_data() { AddWindows(); }
    static void f1OpensTheChapterOfTheWindow()
    {
        QFETCH(const WindowCase, tested);
        AllWindows windows(tested);

        PressF1(windows.Tested());

        QVERIFY(GuideWindow().isVisible());
        QCOMPARE(TopLine(), tested.chapter);
        QTRY_VERIFY_WITH_TIMEOUT(IsInFront(GuideWindow()), kPatienceMs);
        QVERIFY(View().hasFocus());
    }

    static void f1InAMessageOpensTheMessages()
    {
        const Guide guide(*qApp);
        MessageProbe message(Qt::Key_Escape, [] {
            BringToFront(*QApplication::activeModalWidget());
            PressF1(*QApplication::activeModalWidget());
            QCOMPARE(TopLine(), "Messaggi");
            PressIn(GuideWindow(), Qt::Key_Escape);
            QVERIFY(!GuideWindow().isVisible());
        });

        ShowMessage(nullptr, "testo");
    }

    static void f1InTheEditorFollowsItsPageAndItsPopups()
    {
        const Guide guide(*qApp);
        EditorWindow program(SettingsWith({"A"}));
        program.Open();
        program.Choice("cboTipoConn").showPopup();
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), kPatienceMs);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_F1);
        QVERIFY(!QApplication::activePopupWidget());
        QCOMPARE(TopLine(), "Scheda Connessione");

        PressIn(GuideWindow(), Qt::Key_Escape); // closes only the guide
        QVERIFY(!GuideWindow().isVisible());
        QVERIFY(program.Editor().isVisible());
        QVERIFY(program.List().isVisible());

        GuideWindow().showMinimized();
        BringToFront(program.Editor());
        program.At<QTabWidget>("tabSetup").setCurrentIndex(2);
        PressF1(program.Editor());
        QVERIFY(!GuideWindow().isMinimized());
        QTRY_VERIFY_WITH_TIMEOUT(IsInFront(GuideWindow()), kPatienceMs);
        QCOMPARE(TopLine(), "Scheda File");

        View().ShowChapter("messaggi");
        const ModalVisit<QFileDialog> visit([](QFileDialog& chooser) {
            PressF1(chooser);
            QCOMPARE(TopLine(), "Scheda File");
            chooser.reject();
        });
        program.Click("cmdSfoglia1");
    }

    static void guideIsUsableNextToAModalDialog()
    {
        const Guide guide(*qApp);
        SiteWindow program(SettingsWith({"A"}));
        const auto hasGuide = [](const QWidget* each) { return qobject_cast<const frmGuida*>(each); };
        QVERIFY(std::ranges::none_of(QApplication::topLevelWidgets(), hasGuide)); // not before the first F1
        PressF1(program.List());
        BringToFront(GuideWindow());
        PressF1(GuideWindow());
        QVERIFY(GuideWindow().isVisible());
        QCOMPARE(TopLine(), "Elenco dei siti");

        const auto click = [](QWidget& window, const char* button) {
            QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                              SiteWindow::Part<QPushButton>(window, button).geometry().center());
        };
        const ModalVisit<frmDettaglio> visit([&](frmDettaglio& editor) {
            click(GuideWindow(), "cmdSommario");
            QCOMPARE(TopLine(), "Sommario");
            PressF1(editor);
            const int before = View().verticalScrollBar()->value();
            PressIn(GuideWindow(), Qt::Key_PageDown);
            QVERIFY(View().verticalScrollBar()->value() > before);

            click(program.List(), "cmdChiudi");
            QVERIFY(program.List().isVisible()); // the list is still blocked
            QVERIFY(editor.isVisible());
            editor.reject();
        });
        SiteWindow::Part<QPushButton>(program.List(), "cmdProperties").click();
    }

    static void guideOutlivesTheDialogItWasOpenedFrom()
    {
        const Guide guide(*qApp);
        SiteWindow program(SettingsWith({"A"}));
        {
            BufferWindow buffer;
            buffer.Open();
            PressF1(buffer.Window());
        }

        QVERIFY(GuideWindow().isVisible());
        QCOMPARE(TopLine(), "Stato Buffer");
    }

    static void everyLinkLeadsToAChapter()
    {
        GuideView view;
        int count = 0;
        ForEachFragment(*view.document(), [&](const QTextBlock&, const QTextFragment& part) {
            const QUrl link(part.charFormat().anchorHref());
            if (link.isEmpty())
                return;
            view.moveCursor(QTextCursor::End);
            emit view.anchorClicked(view.source().resolved(link));
            QVERIFY2(view.textCursor().blockFormat().headingLevel() > 0, qPrintable(link.toString()));
            ++count;
        });
        QVERIFY(count > 30);
    }

    // Also run on a screen of 200 %.
    static void picturesFitTheWindowAndAreNotEnlarged()
    {
        frmGuida window;
        window.Open("sommario");
        QStringList shown;
        for (const int width : {300, 2000}) {
            window.resize(width, 400);
            shown.clear();
            ForEachFragment(*View().document(), [&](const QTextBlock&, const QTextFragment& part) {
                if (!part.charFormat().isImageFormat())
                    return;
                const QString name = part.charFormat().toImageFormat().name();
                const auto picture =
                    View().document()->resource(QTextDocument::ImageResource, QUrl(name)).value<QImage>();
                const QString suffix = View().devicePixelRatioF() > 1 ? "@2x.png" : ".png";
                const QImage source(":/guida/" + QString(name).replace(".png", suffix));
                QVERIFY2(!picture.isNull() && picture.width() <= source.width(), qPrintable(name));
                QVERIFY2(picture.deviceIndependentSize().width() < View().viewport()->width(),
                         qPrintable(name));
                shown.append(QFileInfo(name).fileName());
            });
            QCOMPARE(View().horizontalScrollBar()->maximum(), 0);
        }

        shown.sort();
        QStringList files = QDir(QStringLiteral(CORVREC_TEST_DATA "/../../docs/images")).entryList({"*.png"});
        files.removeIf([](const QString& file) { return file.contains('@'); });
        QCOMPARE(shown, files);
    }

    static void theTopLineStaysAtAnotherWidth()
    {
        frmGuida window;
        window.Open("stato-buffer");

        window.resize(400, 500);
        QCOMPARE(TopLine(), "Stato Buffer");
        window.resize(900, 700);
        QCOMPARE(TopLine(), "Stato Buffer");
    }

    // All texts of the program, not only the messages, except the help texts in the windows themselves.
    static void everyTextThatCodeShowsIsInTheGuide()
    {
        const GuideView view;
        const QString guide = view.toPlainText().simplified();
        QFile header(CORVREC_TEST_DATA "/../../src/core/text_ids.h");
        QVERIFY(header.open(QIODevice::ReadOnly));
        auto ids = QRegularExpression(R"(TextId (\w+)\{(\d+)\};)").globalMatch(header.readAll());
        int count = 0;
        while (ids.hasNext()) {
            const auto id = ids.next();
            const QString text = Plain(FindText(id.captured(2).toInt())).simplified();
            const bool isThere = !text.isEmpty() && guide.contains(text);
            QVERIFY2(isThere || id.captured(1).endsWith("Help"), qPrintable(text));
            ++count;
        }
        QVERIFY(count > 70);
    }

    static void namesInBoldAreThoseOfTheProgram()
    {
        const EditorWindow program(SettingsWith({"A"}));
        const BufferWindow buffer;
        frmGuida window;
        const QSet<QString> names = ShownNames();
        int count = 0;
        ForEachFragment(*View().document(), [&](const QTextBlock& block, const QTextFragment& part) {
            const QTextTable* const table = QTextCursor(block).currentTable();
            const bool isHeading = block.blockFormat().headingLevel() > 0 ||
                                   (table != nullptr && table->cellAt(block.position()).row() == 0);
            if (isHeading || part.charFormat().fontWeight() < QFont::Bold)
                return;
            QVERIFY2(names.contains(Plain(part.text())), qPrintable(part.text()));
            ++count;
        });
        QVERIFY(count > 150);
    }

    static void everyControlHasAToolTipAndItIsInTheTableOfItsChapter()
    {
        const QSet<QString> plainlyNamed{"OK", "Annulla", "cmdAnnulla", "cmdChiudi", "dgrdGrigliaSiti"};
        GuideView view;
        QHash<QString, QSet<NamedRow>> rows;
        int count = 0;
        ForEachPart([&](const QWidget& part) {
            if (part.objectName() == "lblFile") // its tool tip is its full text
                return;
            if (part.toolTip().isEmpty()) {
                const bool needsOne = IsFieldOrButton(part) && !plainlyNamed.contains(part.objectName());
                QVERIFY2(!needsOne, qPrintable(part.objectName()));
                return;
            }
            const QString chapter = ChapterOf(part);
            if (!rows.contains(chapter))
                rows.insert(chapter, NamedRows(view, chapter));
            const QString tip = QTextDocumentFragment::fromHtml(part.toolTip()).toPlainText();
            const bool isThere = rows.value(chapter).contains({CaptionOf(part), tip});
            QVERIFY2(isThere, qPrintable(QString("%1: | **%2** | %3 |").arg(chapter, CaptionOf(part), tip)));
            ++count;
        });
        QVERIFY(count > 90);
    }

    static void valuesOfABrokenReplyAreThoseOfTheGuide_data()
    {
        QTest::addColumn<BufferModel>("model");
        QTest::addColumn<QString>("name");
        for (const DeviceRow& device : kDevices) {
            if (device.kind != DeviceKind::exchange)
                QTest::newRow(device.shown.data())
                    << device.model << QString::fromUtf8(device.shown.data()).section(' ', -1);
        }
    }

    static void valuesOfABrokenReplyAreThoseOfTheGuide()
    {
        QFETCH(const BufferModel, model);
        QFETCH(const QString, name);
        GuideView view;
        const QTextTable& table = TableUnder(view, "risposta-interrotta");
        int column = 1;
        while (column < table.columns() && !TextOf(table.cellAt(0, column)).contains(name))
            ++column;
        QVERIFY2(column < table.columns(), "the guide has no column for it");
        BufferWindow buffer(Reached::direct, model);
        buffer.Time().SetNow({.year = 2026, .month = 11, .day = 21, .hour = 11, .minute = 27, .second = 30});
        buffer.DeviceReplies("\x02");
        buffer.Open();

        buffer.Click("cmdStato");

        QHash<QString, QString> shown;
        for (const QLabel* const caption : buffer.Window().findChildren<QLabel*>()) {
            if (const auto* const value = qobject_cast<const QLabel*>(caption->buddy()))
                shown.insert(Plain(caption->text()), value->text());
        }
        const QHash<QString, QString> inWords{{"vuoto", ""},
                                              {"la data e l'ora attuali", "21/11/2026 11:27:30"}};
        QVERIFY(table.rows() > 1);
        for (int row = 1; row < table.rows(); ++row) {
            const QString said = TextOf(table.cellAt(row, column));
            QCOMPARE(shown.value(TextOf(table.cellAt(row, 0)), "no such value"), inWords.value(said, said));
        }
    }

    static void titleShowsTheVersion()
    {
        const frmGuida window;

        QCOMPARE(window.windowTitle(), "Guida di Corvane Recorder " CORVREC_VERSION);
    }

    static void searchingMovesFromHitToHit()
    {
        frmGuida window;
        window.Open("sommario");
        PressIn(window, Qt::Key_F, Qt::ControlModifier);
        auto& field = SiteWindow::Part<QLineEdit>(window, "txtCerca");
        const auto& outcome = SiteWindow::Part<QLabel>(window, "lblEsito");
        QVERIFY(field.hasFocus());
        QTest::keyClicks(&field, "catalogo");
        const auto search = [&field](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
            QTest::keyClick(&field, key, modifiers);
            return View().textCursor().position();
        };

        const int first = search(Qt::Key_Return);
        const int second = search(Qt::Key_F3);
        QVERIFY(second > first);
        QVERIFY(search(Qt::Key_F3) > second);
        QCOMPARE(search(Qt::Key_F3, Qt::ShiftModifier), second);
        View().moveCursor(QTextCursor::Start);
        QVERIFY(search(Qt::Key_F3, Qt::ShiftModifier) > second); // the last hit
        View().moveCursor(QTextCursor::End);
        QCOMPARE(search(Qt::Key_Return), first);
        QCOMPARE(View().textCursor().selectedText().toLower(), "catalogo");

        QTest::keyClicks(&field, "ornitorinco");
        search(Qt::Key_Return);
        QCOMPARE(outcome.text(), "Non trovato");
        search(Qt::Key_Backspace);
        QCOMPARE(outcome.text(), QString());

        const int middle = View().viewport()->height() / 2;
        for (const bool isForward : {true, false}) {
            QVERIFY(isForward ? View().FindNext("Xon") : View().FindPrevious("catalogo"));
            const int distance = std::abs(View().cursorRect().center().y() - middle);
            QVERIFY(distance <= View().fontMetrics().lineSpacing());
        }
    }

    static void altLeftGoesBackToWhereTheReaderWas()
    {
        frmGuida window;
        window.Open("scheda-file");
        BringToFront(window);
        View().verticalScrollBar()->setValue(View().verticalScrollBar()->value() + 200);
        const QString read = TopLine();

        SiteWindow::Part<QPushButton>(window, "cmdSommario").click();
        QTest::keyClick(&View(), Qt::Key_Tab);
        QTest::keyClick(&View(), Qt::Key_Return); // follows the link
        QCOMPARE(TopLine(), "Installazione");

        const QStringList earlier{"Sommario", read, read}; // at last there is no earlier place
        for (const QString& place : earlier) {
            PressIn(window, Qt::Key_Left, Qt::AltModifier);
            QCOMPARE(TopLine(), place);
        }
    }

    static void guideOpensNextToTheWindowItExplains_data()
    {
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QTest::addColumn<QRect>("place");
        QTest::addColumn<bool>("hasRoom");
        QTest::newRow("left") << QRect(10, 50, 100, 200) << true;
        QTest::newRow("right") << QRect(screen.width() - 120, 50, 100, 200) << true;
        QTest::newRow("above") << QRect(10, 40, screen.width() - 20, 100) << true;
        QTest::newRow("below") << QRect(10, screen.height() - 110, screen.width() - 20, 100) << true;
        QTest::newRow("everywhere") << screen.marginsRemoved({10, 40, 10, 10}) << false;
    }

    static void guideOpensNextToTheWindowItExplains()
    {
        QFETCH(const QRect, place);
        QFETCH(const bool, hasRoom);
        const Guide guide(*qApp);
        QWidget explained;
        explained.setProperty(kGuideChapter, "scheda-file");
        explained.setGeometry(place);
        explained.show();
        BringToFront(explained);

        PressF1(explained);

        QTRY_VERIFY_WITH_TIMEOUT(IsInFront(GuideWindow()), kPatienceMs);
        const QRect frame = GuideWindow().frameGeometry();
        QCOMPARE(explained.frameGeometry().intersects(frame), !hasRoom);
        QCOMPARE(explained.screen()->availableGeometry().united(frame),
                 explained.screen()->availableGeometry());
        QVERIFY(View().width() > 50 * View().fontMetrics().averageCharWidth());
    }

    // As in the style of Windows.
    static void hitsAreColouredWithoutTheFocusToo()
    {
        GuideView view;
        QPalette pale = view.palette();
        pale.setColor(QPalette::Inactive, QPalette::Highlight, Qt::lightGray);

        view.setPalette(pale);

        QCOMPARE(view.palette().color(QPalette::Inactive, QPalette::Highlight),
                 view.palette().color(QPalette::Active, QPalette::Highlight));
    }

    // As on a desktop that sets dark colours but no link colour.
    static void linksCanBeReadOnADarkBackground()
    {
        GuideView view;
        QPalette dark = view.palette();
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::Link, Qt::blue);

        view.setPalette(dark);

        int links = 0;
        ForEachFragment(*view.document(), [&links](const QTextBlock&, const QTextFragment& part) {
            if (!part.charFormat().isAnchor())
                return;
            ++links;
            QVERIFY(qGray(part.charFormat().foreground().color().rgb()) >= 100);
        });
        QVERIFY(links > 10);
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::guide_test> registered;
#include "guide_test.moc"
