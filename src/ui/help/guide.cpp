#include "ui/help/guide.h"

#include "ui/help/frmGuida.h"
#include "ui/widgets/dialogs.h"

#include <QApplication>
#include <QKeyEvent>
#include <QVariant>

namespace corvrec
{

namespace
{

bool IsHelpKey(const QEvent& event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier;
}

QString OwnChapter(const QWidget& widget)
{
    return widget.property(kGuideChapter).toString();
}

// The chapter of the page in front, if the window's pages have chapters of their own; otherwise the window's.
QString WindowsChapter(const QWidget& window)
{
    for (const QWidget* const page : window.findChildren<QWidget*>()) {
        if (page->window() == &window && page->isVisible() && !OwnChapter(*page).isEmpty())
            return OwnChapter(*page);
    }
    return OwnChapter(window);
}

// The chapter of the window, or of the nearest window above it that has one.
QString ChapterFor(const QWidget* window)
{
    QString chapter;
    while (window != nullptr && chapter.isEmpty()) {
        chapter = WindowsChapter(*window);
        const QWidget* const parent = window->parentWidget();
        window = parent == nullptr ? nullptr : parent->window();
    }
    return chapter;
}

} // namespace

Guide::Guide(QCoreApplication& application)
{
    application.installEventFilter(this);
}

Guide::~Guide() = default;

bool Guide::eventFilter(QObject* watched, QEvent* event)
{
    if (!IsHelpKey(*event))
        return QObject::eventFilter(watched, event);
    const QWidget* const asked = QApplication::activeWindow();
    const QString chapter = ChapterFor(asked);
    if (chapter.isEmpty()) // also when no window is active
        return QObject::eventFilter(watched, event);
    // An open list grabs the mouse, so the guide could not be used.
    if (QWidget* const list = QApplication::activePopupWidget())
        list->close();
    Open(chapter, *asked);
    return true;
}

void Guide::Open(const QString& chapter, const QWidget& asked)
{
    if (!window_)
        window_ = std::make_unique<frmGuida>();
    window_->Open(chapter, &asked);
}

} // namespace corvrec
