#include "tests/support/registered_test.h"
#include "ui/widgets/texts.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QTranslator>

#include <memory>

namespace corvrec
{

namespace
{

QByteArray Bytes(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString DataFile(const QString& name)
{
    return QStringLiteral(CORVREC_TEST_DATA "/") + name;
}

QString SourceFile(const QString& name)
{
    return QStringLiteral(CORVREC_TEST_DATA "/../../") + name;
}

QString QtCancelButton()
{
    return QCoreApplication::translate("QPlatformTheme", "Cancel");
}

} // namespace

class texts_test : public QObject
{
    Q_OBJECT

private slots:
    void init() { InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::Italian, QLocale::Italy)); }
    void cleanup()
    {
        qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator*>());
        QLocale::setDefault(QLocale::c());
    }

    void everyTextIsAsExpected_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("expected");
        const QJsonObject texts = QJsonDocument::fromJson(Bytes(DataFile("texts.json"))).object();
        for (auto text = texts.begin(); text != texts.end(); ++text)
            QTest::newRow(qPrintable(text.key())) << text.key().toInt() << text.value().toString();
    }

    void everyTextIsAsExpected()
    {
        QFETCH(const int, id);
        QFETCH(const QString, expected);

        QCOMPARE(FindText(id), expected);
    }

    void idsAreExactlyTheExpectedOnes()
    {
        const QJsonObject expected = QJsonDocument::fromJson(Bytes(DataFile("texts.json"))).object();
        QVERIFY(!expected.isEmpty());

        QStringList found;
        for (int id = -1; id < 100'000; ++id) {
            if (!FindText(id).isNull())
                found.append(QString::number(id));
        }

        found.sort(); // a JSON object's keys are sorted as texts
        QCOMPARE(found, expected.keys());
    }

    void everyIdInCodeHasAText()
    {
        const QString header = QString::fromUtf8(Bytes(SourceFile("src/core/text_ids.h")));
        auto names = QRegularExpression(R"(TextId (\w+)\{(\d+)\};)").globalMatch(header);

        int count = 0;
        for (; names.hasNext(); ++count) {
            const auto name = names.next();
            QVERIFY2(!FindText(name.captured(2).toInt()).isNull(), qPrintable(name.captured(1)));
        }
        QVERIFY(count > 50);
    }

    // A form is drawn with the texts that its tags name, so a wrong tag is noticed.
    void everyTagInAFormHasAText()
    {
        const QRegularExpression caption("name=\"(?:text|title|windowTitle)\"><string[^>]*>([^<]*)<.*\\s*"
                                         "(?:<property name=\"(?!tag|text|title).*\\s*)*<property "
                                         "name=\"tag\"[^>]*><string[^>]*>([^<]*)<");
        int captions = 0;
        const QRegularExpression tag(
            "name=\"(?:tag\"|suggerimento\") stdset=\"0\">\\s*<string[^>]*>([^<]*)<");
        int count = 0;
        for (const char* const folder : {"src/app", "src/ui/buffer", "src/ui/editor", "src/ui/help"}) {
            QDirIterator forms(SourceFile(folder), {"*.ui"}, QDir::Files);
            while (forms.hasNext()) {
                const QString form = QString::fromUtf8(Bytes(forms.next()));
                auto tags = tag.globalMatch(form);
                QVERIFY2(tags.hasNext(), qPrintable(forms.filePath()));
                for (; tags.hasNext(); ++count) {
                    const QString id = tags.next().captured(1);
                    QVERIFY2(!FindText(TagId(id)).isNull(), qPrintable(forms.filePath() + ": " + id));
                }
                for (auto drawn = caption.globalMatch(form); drawn.hasNext(); ++captions) {
                    const QRegularExpressionMatch each = drawn.next();
                    QCOMPARE(FindText(TagId(each.captured(2))),
                             QTextDocumentFragment::fromHtml(each.captured(1)).toPlainText());
                }
            }
        }
        QVERIFY(count > 50);
        QVERIFY(captions > 70); // except those of the status, which its class makes
    }

    void blanksAtTheEndOfATextStay() { QCOMPARE(Text(text::collisionMatch), QString("corrispondono ")); }

    void aMissingIdGivesNoText()
    {
        QVERIFY(FindText(0).isNull());
        QVERIFY(FindText(99999).isNull());
    }

    void tagHoldsTheNumberBeforeTheSemicolon_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<int>("id");
        const auto vectors = QJsonDocument::fromJson(Bytes(DataFile("conversions.json"))).object();
        const QJsonArray cases = vectors["tag_id"].toArray();
        QCOMPARE(cases.size(), 16);
        for (const QJsonValue each : cases)
            QTest::newRow(qPrintable('"' + each["in"].toString() + '"'))
                << each["in"].toString() << each["out"].toInt();
    }

    void tagHoldsTheNumberBeforeTheSemicolon()
    {
        QFETCH(const QString, tag);
        QFETCH(const int, id);

        QCOMPARE(TagId(tag), id);
    }

    void qtsOwnTextsAreItalianToo()
    {
        QCOMPARE(QtCancelButton(), QString("Annulla"));
        QCOMPARE(QLocale(), QLocale(QLocale::Italian, QLocale::Italy));
    }

    void aUserWithoutATableGetsItalian()
    {
        cleanup();
        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::German, QLocale::Germany));

        QCOMPARE(Text(text::saturday), QString("Sabato"));
        QCOMPARE(QtCancelButton(), QString("Annulla"));
        QCOMPARE(QLocale(), QLocale(QLocale::Italian, QLocale::Italy));
    }

    void aUserWithATableGetsItsTexts()
    {
        cleanup();
        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::French, QLocale::France));

        QCOMPARE(Text(text::saturday), QString("Samedi"));
        QCOMPARE(QLocale().language(), QLocale::French);
    }

    void aTextThatTheUsersTableLacksIsItalian()
    {
        cleanup();
        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::French, QLocale::France));

        QCOMPARE(Text(text::sunday), QString("Domenica"));
        QVERIFY(FindText(99999).isNull());
    }

    void qtsOwnTextsFollowTheUsersTable()
    {
        cleanup();
        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::French, QLocale::France));

        QCOMPARE(QtCancelButton(), QString("Annuler"));
    }

    // As windeployqt deploys them.
    void qtsOwnTextsMayBeInOneFile()
    {
        cleanup();
        const QTemporaryDir folder;
        QVERIFY(QFile::copy(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + "/qtbase_it.qm",
                            folder.filePath("qt_it.qm")));

        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::Italian, QLocale::Italy), folder.path());

        QCOMPARE(QtCancelButton(), QString("Annulla"));
    }

    void withoutQtsOwnTextsThoseAreEnglish()
    {
        cleanup();
        const QTemporaryDir folder;

        InstallTexts(*QCoreApplication::instance(), QLocale(QLocale::Italian, QLocale::Italy), folder.path());

        QCOMPARE(QtCancelButton(), QString("Cancel"));
        QCOMPARE(Text(text::saturday), QString("Sabato"));
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::texts_test> registered;
#include "texts_test.moc"
