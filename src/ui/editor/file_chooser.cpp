#include "ui/editor/file_chooser.h"

#include <QAction>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QMimeDatabase>

namespace corvrec
{

namespace
{

// Determines file types by name. By default the chooser reads each file in the folder to find its type, and
// hangs on one that never ends or never yields a byte, such as a FIFO.
class TypesByName : public QFileIconProvider
{
public:
    QString type(const QFileInfo& info) const override
    {
        return QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension).comment();
    }
};

bool HoldsFiles(const QString& folder)
{
    return !QDir(folder).entryList(QDir::Files).isEmpty();
}

} // namespace

std::optional<QString> FolderOf(const QString& text)
{
    const QChar separator = text.startsWith('/') ? '/' : '\\';
    qsizetype length = text.length();
    // One or two characters are taken as they are: "C:" is a folder.
    if (length > 2) {
        while (length >= 2 && text.at(length - 1) != separator)
            --length;
    }
    if (length <= 1)
        return std::nullopt;
    return text.left(length);
}

std::optional<QString> ChooseFile(QWidget* parent, const QString& fieldText, const QString& ownDirectory)
{
    const std::optional<QString> folder = FolderOf(fieldText);
    TypesByName types; // must outlive the chooser
    QFileDialog chooser(parent, {}, folder && HoldsFiles(*folder) ? *folder : ownDirectory);
    chooser.setWindowModality(Qt::WindowModal); // blocks only its own window: the guide stays usable
    chooser.setAcceptMode(QFileDialog::AcceptOpen);
    chooser.setFileMode(QFileDialog::AnyFile);
    chooser.setIconProvider(&types);
    // Only a name is chosen: no file may be deleted or renamed here. The option does not disable the command
    // for a new folder.
    chooser.setOption(QFileDialog::ReadOnly);
    if (auto* const newFolder = chooser.findChild<QAction*>("qt_new_folder_action"))
        newFolder->setEnabled(false);
    // Qt takes the last parentheses as the pattern and, with the details hidden, does not show them. "*" also
    // lists names without a point.
    chooser.setOption(QFileDialog::HideNameFilterDetails);
    chooser.setNameFilters({"Testo (*.txt) (*.txt)", "Tutti i file (*.*) (*)"});
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty())
        return std::nullopt;
    return QDir::toNativeSeparators(chooser.selectedFiles().constFirst());
}

} // namespace corvrec
