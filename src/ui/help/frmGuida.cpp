#include "ui/help/frmGuida.h"

#include "ui/widgets/dialogs.h"
#include "ui/widgets/texts.h"
#include "ui_frmGuida.h"

#include <QScreen>
#include <QShortcut>

#include <algorithm>
#include <array>

namespace corvrec
{

namespace
{

constexpr auto kContents = "sommario";

// Room for a picture of the widest dialog beside comfortable lines, in characters and in lines of text.
constexpr int kColumns = 125;
constexpr int kLines = 54;

// Below that it is no pleasure to read, and the guide rather covers the window.
constexpr int kLeastColumns = 60;
constexpr int kLeastLines = 24;

QSize SizeOf(const QFontMetrics& metrics, int columns, int lines)
{
    return {metrics.averageCharWidth() * columns, metrics.lineSpacing() * lines};
}

// What the screen has free on each side of a window: right, left, below, above.
std::array<QRect, 4> RoomAround(const QRect& screen, const QRect& window)
{
    std::array<QRect, 4> sides{screen, screen, screen, screen};
    sides[0].setLeft(window.right() + 1);
    sides[1].setRight(window.left() - 1);
    sides[2].setTop(window.bottom() + 1);
    sides[3].setBottom(window.top() - 1);
    return sides;
}

bool Holds(const QSize& outer, const QSize& inner)
{
    return inner.width() <= outer.width() && inner.height() <= outer.height();
}

// A rectangle of that size within the room, as near as can be to the point.
QRect Within(const QRect& room, const QSize& size, const QPoint& wanted)
{
    const QPoint last(room.right() + 1 - size.width(), room.bottom() + 1 - size.height());
    return {{std::max(std::min(wanted.x(), last.x()), room.left()),
             std::max(std::min(wanted.y(), last.y()), room.top())},
            size};
}

// Where a window goes that explains another one, both with their frames. Whole on the screen; next to the
// other one in its full size, else as large as there is room, but not smaller than least; else at the edge
// that is farthest.
QRect PlaceFor(const QRect& screen, const QRect& explained, const QSize& full, const QSize& least)
{
    const QSize size = full.boundedTo(screen.size());
    const auto sides = RoomAround(screen, explained);
    for (const QSize& needed : {size, least.boundedTo(size)}) {
        for (const QRect& side : sides) {
            if (Holds(side.size(), needed))
                return Within(side, size.boundedTo(side.size()), explained.topLeft());
        }
    }
    const bool isRightFarther = sides[0].width() >= sides[1].width();
    return Within(screen, size, isRightFarther ? screen.bottomRight() : screen.topLeft());
}

} // namespace

frmGuida::frmGuida()
    : ui_(std::make_unique<Ui::frmGuida>())
{
    ui_->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    connect(ui_->cmdSommario, &QPushButton::clicked, this, &frmGuida::cmdSommario_Click);
    connect(ui_->cmdChiudi, &QPushButton::clicked, this, &frmGuida::close);
    connect(ui_->txtCerca, &QLineEdit::returnPressed, this, &frmGuida::Cerca);
    connect(ui_->txtCerca, &QLineEdit::textEdited, ui_->lblEsito, &QLabel::clear);

    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this, &frmGuida::close);
    connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, &frmGuida::Cerca);
    connect(new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F3), this), &QShortcut::activated, this,
            &frmGuida::CercaIndietro);
    connect(new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Left), this), &QShortcut::activated, ui_->txtGuida,
            &GuideView::GoBack);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->txtCerca, [this] {
        ui_->txtCerca->setFocus();
        ui_->txtCerca->selectAll();
    });
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    setWindowTitle(windowTitle() + " " CORVREC_VERSION);
    ui_->txtGuida->setAccessibleName(Text(text::guideText));
    resize(SizeOf(fontMetrics(), kColumns, kLines).boundedTo(screen()->availableSize()));
}

frmGuida::~frmGuida() = default;

void frmGuida::Open(const QString& chapter, const QWidget* explained)
{
    const bool wasClosed = !isVisible();
    if (explained != nullptr && wasClosed)
        PlaceNextTo(*explained);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    ui_->txtGuida->setFocus();
    ui_->txtGuida->ShowChapter(chapter);
    if (wasClosed)
        ui_->txtGuida->ForgetPlaces(); // nobody was reading yet
}

// A frame is known only of a window that is shown; the guide will have one like the explained window's.
void frmGuida::PlaceNextTo(const QWidget& explained)
{
    const QRect frame = explained.frameGeometry();
    const QSize border = frame.size() - explained.size();
    const QRect place = PlaceFor(
        explained.screen()->availableGeometry(), frame, SizeOf(fontMetrics(), kColumns, kLines) + border,
        SizeOf(fontMetrics(), kLeastColumns, kLeastLines).expandedTo(minimumSizeHint()) + border);
    resize(place.size() - border);
    move(place.topLeft());
}

void frmGuida::cmdSommario_Click()
{
    ui_->txtGuida->setFocus();
    ui_->txtGuida->ShowChapter(kContents);
}

void frmGuida::Cerca()
{
    ShowOutcome(ui_->txtGuida->FindNext(ui_->txtCerca->text()));
}

void frmGuida::CercaIndietro()
{
    ShowOutcome(ui_->txtGuida->FindPrevious(ui_->txtCerca->text()));
}

void frmGuida::ShowOutcome(bool found)
{
    ui_->lblEsito->setText(found ? QString() : Text(text::notFound));
}

} // namespace corvrec
