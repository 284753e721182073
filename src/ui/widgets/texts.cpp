#include "ui/widgets/texts.h"

#include <QCoreApplication>
#include <QTranslator>

#include <cassert>
#include <memory>

namespace corvrec
{

namespace
{

const QString kFolder = QStringLiteral(":/texts");
const QString kTable = QStringLiteral("corvrec");

// Name of the translators that hold a string table, among the application's children.
const QString kTableObject = QStringLiteral("corvrecTexts");

QLocale Italian()
{
    return {QLocale::Italian, QLocale::Italy};
}

QLocale LanguageOf(const QTranslator& table)
{
    return QLocale(table.language());
}

void Install(QCoreApplication& application, std::unique_ptr<QTranslator> translator)
{
    translator->setParent(&application);
    QCoreApplication::installTranslator(translator.release());
}

std::unique_ptr<QTranslator> LoadTable(const QLocale& locale)
{
    auto table = std::make_unique<QTranslator>();
    if (!table->load(locale, kTable, QStringLiteral("_"), kFolder))
        return nullptr;
    table->setObjectName(kTableObject);
    return table;
}

// Buttons of file choosers, context menus. Without a file these stay English, and nothing else suffers.
void InstallQtTexts(QCoreApplication& application, const QLocale& locale, const QString& folder)
{
    // Qt has a file for each of its modules; windeployqt makes one of them all, and calls it "qt".
    for (const QString& file : {QStringLiteral("qtbase"), QStringLiteral("qt")}) {
        auto texts = std::make_unique<QTranslator>();
        if (texts->load(locale, file, QStringLiteral("_"), folder))
            return Install(application, std::move(texts));
    }
}

} // namespace

void InstallTexts(QCoreApplication& application, const QLocale& user, const QString& qtFolder)
{
    auto italian = LoadTable(Italian());
    assert(italian);
    Install(application, std::move(italian));

    QLocale locale = Italian();
    auto own = LoadTable(user);
    if (own && LanguageOf(*own).language() != QLocale::Italian) {
        locale = LanguageOf(*own);
        Install(application, std::move(own));
    }
    InstallQtTexts(application, locale, qtFolder);
    QLocale::setDefault(locale);
}

QString Text(TextId id)
{
    QString text = FindText(static_cast<int>(id));
    assert(!text.isNull());
    return text;
}

QString FindText(int id)
{
    // The tables are asked directly: qtTrId answers a missing id with the id itself, as if it were a text.
    const auto tables =
        QCoreApplication::instance()->findChildren<QTranslator*>(kTableObject, Qt::FindDirectChildrenOnly);
    const QByteArray key = QByteArray::number(id);
    QString text;
    for (auto table = tables.rbegin(); table != tables.rend() && text.isNull();
         ++table) // the user's, the Italian
        text = (*table)->translate(nullptr, key.constData());
    return text;
}

int TagId(const QString& tag)
{
    const qsizetype end = tag.indexOf(u';');
    return end < 1 ? 0 : tag.left(end).toInt(); // not a number: 0
}

} // namespace corvrec
