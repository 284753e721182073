#include "tests/support/registered_test.h"
#include "tests/support/vectors.h"
#include "ui/widgets/texts.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTranslator>

namespace corvrec
{

namespace
{

QByteArray Bytes(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString SourceFile(const QString& name)
{
    return QStringLiteral(CORVREC_TEST_DATA "/../../") + name;
}

} // namespace

class texts_test : public QObject
{
    Q_OBJECT

private slots:
    // The texts below 20001 are given. Of our own, which begin there, a new one needs no entry in the file.
    static void everyTextIsAsExpected()
    {
        constexpr int kFirstOwn = 20'001;
        const QJsonObject texts = QJsonDocument::fromJson(Bytes(CORVREC_TEST_DATA "/texts.json")).object();
        QVERIFY(!texts.isEmpty());
        for (int id = -1; id < 100'000; ++id) {
            const QJsonValue expected = texts.value(QString::number(id));
            if (!expected.isUndefined())
                QCOMPARE(FindText(id), expected.toString());
            else if (id < kFirstOwn)
                QVERIFY2(FindText(id).isNull(), qPrintable(QString::number(id)));
        }
        QCOMPARE(Text(text::collisionMatch), "corrispondono "); // blanks at the end stay
    }

    static void everyIdInCodeAndEveryTagInAFormHasAText()
    {
        const auto count = [](const QString& file, const QRegularExpression& id, const char* end) {
            auto ids = id.globalMatch(QString::fromUtf8(Bytes(file)));
            int found = 0;
            for (; ids.hasNext(); ++found) {
                const QString tag = ids.next().captured(1) + end;
                if (FindText(TagId(tag)).isNull())
                    QTest::qFail(qPrintable(file + ": " + tag), __FILE__, __LINE__);
            }
            return found;
        };
        QVERIFY(count(SourceFile("src/core/text_ids.h"), QRegularExpression("TextId \\w+\\{(\\d+)\\};"),
                      ";") > 50);
        const QRegularExpression tag(
            // NOLINTNEXTLINE(modernize-raw-string-literal): moc 6.4 reads none with quotation marks
            "name=\"(?:tag\"|suggerimento\") stdset=\"0\">\\s*<string[^>]*>([^<]*)<");
        QDirIterator forms(SourceFile("src"), {"*.ui"}, QDir::Files, QDirIterator::Subdirectories);
        QVERIFY(forms.hasNext());
        while (forms.hasNext())
            QVERIFY2(count(forms.next(), tag, "") > 0, qPrintable(forms.filePath()));
    }

    // A form is drawn with the texts that its tags name, so a wrong tag is noticed.
    static void everyCaptionIsDrawnAsItsTagNamesIt()
    {
        const QRegularExpression caption("name=\"(?:text|title|windowTitle)\"><string[^>]*>([^<]*)<.*\\s*"
                                         "(?:<property name=\"(?!tag|text|title).*\\s*)*<property "
                                         "name=\"tag\"[^>]*><string[^>]*>([^<]*)<");
        int captions = 0;
        QDirIterator forms(SourceFile("src"), {"*.ui"}, QDir::Files, QDirIterator::Subdirectories);
        while (forms.hasNext()) {
            auto drawn = caption.globalMatch(QString::fromUtf8(Bytes(forms.next())));
            for (; drawn.hasNext(); ++captions) {
                const QRegularExpressionMatch each = drawn.next();
                QCOMPARE(FindText(TagId(each.captured(2))),
                         QTextDocumentFragment::fromHtml(each.captured(1)).toPlainText());
            }
        }
        QVERIFY(captions > 70); // except those of the status, which its class makes
    }

    static void tagHoldsTheNumberBeforeTheSemicolon()
    {
        for (const QJsonValue each : Vectors("tag_id"))
            QVERIFY2(TagId(each["in"].toString()) == each["out"].toInt(), qPrintable(each["in"].toString()));
    }

    static void textsFollowTheUsersLanguageIfThereIsATable_data()
    {
        QTest::addColumn<QLocale>("user");
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<QString>("saturday");
        QTest::addColumn<QString>("cancel"); // one of Qt's own texts
        const auto add = [](const char* name, const QLocale& user, const QLocale& locale,
                            const char* saturday, const char* cancel) {
            QTest::newRow(name) << user << locale << saturday << cancel;
        };
        const QLocale italian(QLocale::Italian, QLocale::Italy);
        const QLocale french(QLocale::French, QLocale::France); // the table is the tests' own
        add("Italian", italian, italian, "Sabato", "Annulla");
        add("no table", QLocale(QLocale::German, QLocale::Germany), italian, "Sabato", "Annulla");
        add("table", french, french, "Samedi", "Annuler");
        add("without Qt's", italian, italian, "Sabato", "Cancel");
        add("Qt's in one file", italian, italian, "Sabato", "Annulla"); // as windeployqt deploys them
    }

    static void textsFollowTheUsersLanguageIfThereIsATable()
    {
        QFETCH(const QLocale, user);
        QFETCH(const QLocale, locale);
        QFETCH(const QString, saturday);
        QFETCH(const QString, cancel);
        const QTemporaryDir folder;
        const QString qtFolder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
        const bool isOwnFolder = QByteArray(QTest::currentDataTag()).contains("Qt's");
        if (qstrcmp(QTest::currentDataTag(), "Qt's in one file") == 0)
            QVERIFY(QFile::copy(qtFolder + "/qtbase_it.qm", folder.filePath("qt_it.qm")));
        qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());

        InstallTexts(*QCoreApplication::instance(), user, isOwnFolder ? folder.path() : qtFolder);

        QCOMPARE(Text(text::saturday), saturday);
        QCOMPARE(Text(text::sunday), "Domenica"); // which the French table lacks
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "Cancel"), cancel);
        QCOMPARE(QLocale().language(), locale.language());
        QVERIFY(FindText(99999).isNull());
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::texts_test> registered;
#include "texts_test.moc"
