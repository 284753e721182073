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

// The anchor of the guide's contents.
constexpr auto kContents = "sommario";

// The preferred size, in characters and lines: room for a picture of the widest dialog, and lines of a
// comfortable length.
constexpr int kColumns = 125;
constexpr int kLines = 54;

// The least size that is still pleasant to read. With less room next to the other window, the guide covers it
// instead.
constexpr int kLeastColumns = 60;
constexpr int kLeastLines = 24;

QSize SizeOf(const QFontMetrics& metrics, int columns, int lines)
{
    return {metrics.averageCharWidth() * columns, metrics.lineSpacing() * lines};
}

// The free parts of the screen on each side of a window: right, left, below, above.
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

// A rectangle of that size inside the room, as close to the point as possible.
QRect Within(const QRect& room, const QSize& size, const QPoint& wanted)
{
    const QPoint last(room.right() + 1 - size.width(), room.bottom() + 1 - size.height());
    return {{std::max(std::min(wanted.x(), last.x()), room.left()),
             std::max(std::min(wanted.y(), last.y()), room.top())},
            size};
}

// Where to put a window that explains another one, both including their frames. Always whole on the screen:
// next to the other window in its full size, otherwise as large as the room allows but not below `least`,
// otherwise at the farther edge of the screen.
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
        ui_->txtGuida->ForgetPlaces(); // nobody was reading before
}

// The frame of a window is known only once it is shown; the guide's will be like that of the explained
// window.
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
