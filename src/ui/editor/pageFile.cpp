#include "ui/editor/pageFile.h"

#include "ui/editor/file_chooser.h"
#include "ui/editor/frmFileAvanzate.h"
#include "ui/widgets/paths.h"
#include "ui/widgets/qt_text.h"
#include "ui/widgets/texts.h"
#include "ui_pageFile.h"

namespace corvrec
{

namespace
{

// A long path shows its beginning.
void ShowPath(const QString& path, QLineEdit& field)
{
    field.setText(CapitaliseAfter(path, '\\'));
    field.setCursorPosition(0);
}

} // namespace

pageFile::pageFile(QWidget* parent)
    : QWidget(parent)
    , ui_(std::make_unique<Ui::pageFile>())
{
    ui_->setupUi(this);
    names_ = {{{&SiteRecord::dataFile, ui_->txtDati, text::dataFileMissing},
               {&SiteRecord::exchangeFile, ui_->txtDati2, text::exchangeFileMissing},
               {&SiteRecord::historyFile, ui_->txtStorico, text::historyFileMissing},
               {&SiteRecord::logFile, ui_->txtLog, text::logFileMissing}}};
    AddBrowseButton(*ui_->cmdSfoglia1, *ui_->txtDati, text::browseDataFile);
    AddBrowseButton(*ui_->cmdSfoglia2, *ui_->txtDati2, text::browseExchangeFile);
    AddBrowseButton(*ui_->cmdSfoglia3, *ui_->txtStorico, text::browseHistoryFile);
    connect(ui_->cmdFileAvanzate, &QPushButton::clicked, this, &pageFile::cmdFileAvanzate_Click);
}

pageFile::~pageFile() = default;

// name: for screen readers, since the buttons share a caption.
void pageFile::AddBrowseButton(QPushButton& button, QLineEdit& field, TextId name)
{
    button.setAccessibleName(Text(name));
    connect(&button, &QPushButton::clicked, this, [this, &field] {
        if (const std::optional<QString> path = ChooseFile(window(), field.text(), ownDirectory_))
            ShowPath(*path, field);
    });
}

void pageFile::Load(const QString& ownDirectory, frmFileAvanzate& alerts)
{
    ownDirectory_ = ownDirectory;
    alerts_ = &alerts;
}

void pageFile::ShowRecord(const SiteRecord& site)
{
    for (const NameField& name : names_) {
        if (site.*name.value)
            ShowPath(ToQt(*(site.*name.value)), *name.field);
    }
}

void pageFile::FillRecord(SiteRecord& site) const
{
    for (const NameField& name : names_)
        site.*name.value = ToStd(name.field->text());
}

void pageFile::SelectNames()
{
    for (const NameField& name : names_)
        name.field->selectAll();
}

std::optional<Omission> pageFile::Missing() const
{
    for (const NameField& name : names_) {
        if (name.field->text().isEmpty())
            return Omission{.message = name.missing, .field = name.field};
    }
    return std::nullopt;
}

void pageFile::cmdFileAvanzate_Click()
{
    alerts_->Open(*ui_->cmdFileAvanzate);
}

} // namespace corvrec
