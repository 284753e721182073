#include "core/masked_text.h"
#include "tests/support/registered_test.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <random>

namespace corvrec
{

namespace
{

QJsonArray Vectors(const char* list)
{
    QFile file(CORVREC_TEST_DATA "/conversions.json");
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object()[QLatin1String(list)].toArray();
}

MaskedText Masked(std::u32string_view mask, std::u32string_view text)
{
    MaskedText masked;
    masked.SetMask(mask);
    if (!masked.SetText(text))
        qFatal("text does not fit the mask");
    return masked;
}

QString Shown(const MaskedText& masked)
{
    return QString::fromStdU32String(masked.Text());
}

} // namespace

class masked_text_test : public QObject
{
    Q_OBJECT

private slots:
    void acceptsWhatFitsTheMask_data()
    {
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("accepted");
        const QJsonArray cases = Vectors("mask_accepts_text");
        QCOMPARE(cases.size(), 13);
        for (const QJsonValue each : cases) {
            QTest::addRow("'%s' in '%s'", qPrintable(each["text"].toString()),
                          qPrintable(each["mask"].toString()))
                << each["mask"].toString() << each["text"].toString() << each["out"].toBool();
        }
    }

    void acceptsWhatFitsTheMask()
    {
        QFETCH(const QString, mask);
        QFETCH(const QString, text);
        QFETCH(const bool, accepted);

        MaskedText masked;
        masked.SetMask(mask.toStdU32String());

        QCOMPARE(masked.Accepts(text.toStdU32String()), accepted);
    }

    void replacesASelection_data()
    {
        QTest::addColumn<QJsonValue>("given");
        const QJsonArray cases = Vectors("mask_replace_selection");
        QCOMPARE(cases.size(), 15);
        for (const QJsonValue each : cases) {
            QTest::addRow("'%s' into '%s' at %d,%d", qPrintable(each["insert"].toString()),
                          qPrintable(each["text"].toString()), each["start"].toInt(), each["length"].toInt())
                << each;
        }
    }

    void replacesASelection()
    {
        QFETCH(const QJsonValue, given);
        MaskedText masked =
            Masked(given["mask"].toString().toStdU32String(), given["text"].toString().toStdU32String());

        masked.Replace(static_cast<std::size_t>(given["start"].toInt()),
                       static_cast<std::size_t>(given["length"].toInt()),
                       given["insert"].toString().toStdU32String());

        QCOMPARE(Shown(masked), given["out"].toString());
        QCOMPARE(static_cast<int>(masked.Caret()), given["caret"].toInt());
    }

    void aNewMaskEmptiesTheText()
    {
        MaskedText masked = Masked(U"##:##", U"08:30");

        masked.SetMask(U"##/##/##");
        QCOMPARE(Shown(masked), QString("__/__/__"));

        masked.SetMask(U"");
        QCOMPARE(Shown(masked), QString());
    }

    void aTextThatDoesNotFitChangesNothing()
    {
        MaskedText masked = Masked(U"##:##", U"08:30");

        QVERIFY(!masked.SetText(U"8:30"));

        QCOMPARE(Shown(masked), QString("08:30"));
    }

    void otherDigitsThanAsciiAreRefused()
    {
        MaskedText masked = Masked(U"##:##", U"__:__");

        QVERIFY(!masked.Accepts(U"\u0663\u0663:\u0663\u0663"));
        QVERIFY(!masked.Replace(0, 0, U"\u0663"));

        QCOMPARE(Shown(masked), QString("__:__"));
    }

    void typedDigitsFillThePlaces()
    {
        MaskedText masked = Masked(U"##:##", U"__:__");

        for (const char32_t key : std::u32string_view(U"0830"))
            masked.Replace(masked.Caret(), 0, std::u32string(1, key));

        QCOMPARE(Shown(masked), QString("08:30"));
        QCOMPARE(masked.Caret(), std::size_t{5});
    }

    void typingOverwritesWithoutShifting()
    {
        MaskedText masked = Masked(U"##:##", U"08:30");

        masked.Replace(1, 0, U"9");

        QCOMPARE(Shown(masked), QString("09:30"));
        QCOMPARE(masked.Caret(), std::size_t{3});
    }

    void aDigitAtALiteralIsPutAfterIt()
    {
        MaskedText masked = Masked(U"##:##", U"__:__");

        masked.Replace(2, 0, U"7");

        QCOMPARE(Shown(masked), QString("__:7_"));
        QCOMPARE(masked.Caret(), std::size_t{4});
    }

    void typingTheLiteralMovesOnToTheNextGroup()
    {
        MaskedText masked = Masked(U"##:##", U"8_:__");

        QVERIFY(masked.Replace(1, 0, U":"));
        QCOMPARE(masked.Caret(), std::size_t{3});

        QVERIFY(masked.Replace(2, 0, U":"));
        QCOMPARE(masked.Caret(), std::size_t{3});
        QCOMPARE(Shown(masked), QString("8_:__"));
    }

    void typingALiteralThatTheCaretHasPassedChangesNothing()
    {
        MaskedText masked = Masked(U"##/##/##", U"__/__/__");

        for (const char32_t key : std::u32string_view(U"31/12/26"))
            masked.Replace(masked.Caret(), 0, std::u32string(1, key));

        QCOMPARE(Shown(masked), QString("31/12/26"));
    }

    void otherCharactersAreRefusedAndKeepTheSelectedPlaces()
    {
        MaskedText masked = Masked(U"##:##", U"08:30");

        QVERIFY(!masked.Replace(0, 5, U"a"));
        QVERIFY(!masked.Replace(0, 5, U"/"));
        QVERIFY(!masked.Replace(0, 5, U"#"));
        QVERIFY(!masked.Replace(0, 5, U"_"));
        QVERIFY(!masked.Replace(0, 5, U" "));

        QCOMPARE(Shown(masked), QString("08:30"));
        QCOMPARE(masked.Caret(), std::size_t{0});
    }

    void deletingLeavesThePlaceEmpty()
    {
        MaskedText masked = Masked(U"##/##/##", U"31/12/26");

        QVERIFY(masked.Replace(0, 1, U""));
        QCOMPARE(Shown(masked), QString("_1/12/26"));
        QCOMPARE(masked.Caret(), std::size_t{0});

        QVERIFY(masked.Replace(1, 4, U""));
        QCOMPARE(Shown(masked), QString("__/__/26"));
    }

    void backspaceStartsAfterTheNearestPlace()
    {
        const MaskedText masked = Masked(U"##:##", U"08:30");

        QCOMPARE(masked.CaretForBackspace(0), std::size_t{0});
        QCOMPARE(masked.CaretForBackspace(2), std::size_t{2});
        QCOMPARE(masked.CaretForBackspace(3), std::size_t{2});
        QCOMPARE(masked.CaretForBackspace(4), std::size_t{4});
        QCOMPARE(masked.CaretForBackspace(99), std::size_t{5});
    }

    void deleteStartsAtTheNextPlace()
    {
        const MaskedText masked = Masked(U"##:##", U"08:30");

        QCOMPARE(masked.CaretForDelete(1), std::size_t{1});
        QCOMPARE(masked.CaretForDelete(2), std::size_t{3});
        QCOMPARE(masked.CaretForDelete(5), std::size_t{5});
        QCOMPARE(masked.CaretForDelete(99), std::size_t{5});
    }

    void pastingFillsFromGroupToGroup_data()
    {
        QTest::addColumn<QString>("mask");
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("result");
        QTest::newRow("whole time") << "##:##"
                                    << "12:34"
                                    << "12:34";
        QTest::newRow("digits alone") << "##:##"
                                      << "1234"
                                      << "12:34";
        QTest::newRow("short groups") << "##:##"
                                      << "1:5"
                                      << "1_:5_";
        QTest::newRow("prompts of another box") << "##:##"
                                                << "__:30"
                                                << "__:30";
        QTest::newRow("too long") << "##:##"
                                  << "12:34:56"
                                  << "12:34";
        QTest::newRow("words around") << "##:##"
                                      << "ore 12:34\r\n"
                                      << "12:34";
        QTest::newRow("another separator") << "##:##"
                                           << "12.34"
                                           << "12:34";
        QTest::newRow("whole date") << "##/##/##"
                                    << "31/12/26"
                                    << "31/12/26";
        QTest::newRow("half a date") << "##/##/##"
                                     << "31//26"
                                     << "31/__/26";
        QTest::newRow("date with short groups") << "##/##/##"
                                                << "1/2/26"
                                                << "1_/2_/26";
        QTest::newRow("date with empty groups") << "##/##/##"
                                                << "__/__/26"
                                                << "__/__/26";
        QTest::newRow("date without a day") << "##/##/##"
                                            << "/12/26"
                                            << "__/12/26";
    }

    void pastingFillsFromGroupToGroup()
    {
        QFETCH(const QString, mask);
        QFETCH(const QString, pasted);
        QFETCH(const QString, result);
        MaskedText masked;
        masked.SetMask(mask.toStdU32String());

        masked.Replace(0, 8, pasted.toStdU32String());

        QCOMPARE(Shown(masked), result);
    }

    void rangesBeyondTheTextAreClipped()
    {
        MaskedText masked = Masked(U"##:##", U"08:30");

        masked.Replace(3, 2000, U"4");
        QCOMPARE(Shown(masked), QString("08:4_"));

        QVERIFY(!masked.Replace(2000, 2000, U"4"));
        QCOMPARE(Shown(masked), QString("08:4_"));
        QCOMPARE(masked.Caret(), std::size_t{5});
    }

    void withoutAMaskAnyTextIsKept()
    {
        MaskedText masked;
        QVERIFY(masked.SetText(U"due giorni"));

        masked.Replace(4, 6, U"mesi");

        QCOMPARE(Shown(masked), QString("due mesi"));
        QCOMPARE(masked.Caret(), std::size_t{8});
    }

    void anySequenceOfEditsLeavesATextThatFits()
    {
        const std::u32string keys = U"0123456789:/_#a ";
        std::mt19937 random(20261121); // a fixed seed: the same edits each time
        const auto upTo = [&](std::size_t limit) { return random() % (limit + 1); };
        for (const std::u32string_view mask : {U"##:##", U"##/##/##", U"#", U":#:", U"::"}) {
            MaskedText masked;
            masked.SetMask(mask);
            for (int edit = 0; edit < 20'000; ++edit) {
                std::u32string inserted;
                for (std::size_t length = upTo(4); length > 0; --length)
                    inserted += keys.at(upTo(keys.size() - 1));

                masked.Replace(upTo(10), upTo(10), inserted);

                QVERIFY(masked.Accepts(masked.Text()));
                QVERIFY(masked.Caret() <= masked.Text().size());
            }
        }
    }
};

} // namespace corvrec

static const corvrec::RegisteredTest<corvrec::masked_text_test> registered;
#include "masked_text_test.moc"
