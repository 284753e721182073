#include "help/frmGuida.h"

#include "resources/texts.h"
#include "ui_frmGuida.h"
#include "widgets/dialogs.h"

#include <QScreen>
#include <QShortcut>

namespace corvrec
{

namespace
{

constexpr auto kContents = "sommario";

// Room for a picture of the widest dialog beside comfortable lines, in characters and in lines of text.
constexpr int kColumns = 125;
constexpr int kLines = 54;

QSize StartSize(const QFontMetrics& metrics)
{
    return {metrics.averageCharWidth() * kColumns, metrics.lineSpacing() * kLines};
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
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, ui_->txtCerca, [this] {
        ui_->txtCerca->setFocus();
        ui_->txtCerca->selectAll();
    });
    LocaliseDialog(*this);
    ClickAtOnce(*this);
    setWindowTitle(windowTitle() + " " CORVREC_VERSION);
    ui_->txtGuida->setAccessibleName(Text(text::guideText));
    resize(StartSize(fontMetrics()).boundedTo(screen()->availableSize()));
}

frmGuida::~frmGuida() = default;

void frmGuida::Open(const QString& chapter)
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    ui_->txtGuida->setFocus();
    ui_->txtGuida->ShowChapter(chapter);
}

void frmGuida::cmdSommario_Click()
{
    ui_->txtGuida->setFocus();
    ui_->txtGuida->ShowChapter(kContents);
}

void frmGuida::Cerca()
{
    const bool found = ui_->txtGuida->FindNext(ui_->txtCerca->text());
    ui_->lblEsito->setText(found ? QString() : Text(text::notFound));
}

} // namespace corvrec
