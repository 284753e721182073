#include "ui/widgets/selections.h"

#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"

#include <QEvent>
#include <QSignalBlocker>

#include <cassert>

namespace corvrec
{

namespace
{

// Passes wheel events of a list without the focus to the widget below it.
class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* list = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Wheel || list == nullptr || list->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }
};

QString ShownText(const CodeRow& row)
{
    if (const TextId* const id = std::get_if<TextId>(&row.shown))
        return Text(*id);
    return ToQt(std::get<std::string_view>(row.shown));
}

} // namespace

void FillList(QComboBox& list, const QStringList& entries)
{
    const QSignalBlocker blocker(list);
    list.clear();
    list.addItems(entries);
    list.setCurrentIndex(-1); // the first entry added to an empty list becomes the current one
}

QStringList ShownTexts(std::span<const CodeRow> table)
{
    QStringList texts;
    for (const CodeRow& row : table)
        texts.append(ShownText(row));
    return texts;
}

QStringList ShownTexts(std::span<const DeviceRow> devices)
{
    QStringList texts;
    for (const DeviceRow& device : devices)
        texts.append(ToQt(device.shown));
    return texts;
}

void SetRow(QComboBox& list, int row)
{
    assert(row >= -1 && row < list.count());
    const QSignalBlocker blocker(list);
    list.setCurrentIndex(row);
}

void SelectByPrefix(QComboBox& list, const QString& text)
{
    const int row = text.isEmpty() ? -1 : list.findText(text, Qt::MatchStartsWith); // ignores case
    if (row != -1)
        SetRow(list, row);
}

void GuardWheel(QWidget& window)
{
    for (QComboBox* const list : window.findChildren<QComboBox*>()) {
        list->setFocusPolicy(Qt::StrongFocus); // the wheel does not take the focus either
        list->installEventFilter(new WheelGuard(list));
    }
}

} // namespace corvrec
