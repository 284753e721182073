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

// Object name of the translators that hold a string table, as children of the application.
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

// Qt's own texts: buttons of file choosers, context menus. Without the file they stay English.
void InstallQtTexts(QCoreApplication& application, const QLocale& locale, const QString& folder)
{
    // Qt has one file per module; windeployqt merges them into one called "qt".
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
    // The tables are asked directly: for a missing id, qtTrId would return the id as if it were a text.
    const auto tables =
        QCoreApplication::instance()->findChildren<QTranslator*>(kTableObject, Qt::FindDirectChildrenOnly);
    const QByteArray key = QByteArray::number(id);
    QString text;
    // First the user's table, then the Italian one.
    for (auto table = tables.rbegin(); table != tables.rend() && text.isNull(); ++table)
        text = (*table)->translate(nullptr, key.constData());
    return text;
}

int TagId(const QString& tag)
{
    const qsizetype end = tag.indexOf(u';');
    return end < 1 ? 0 : tag.left(end).toInt(); // 0 when it is not a number
}

} // namespace corvrec
