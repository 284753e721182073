#pragma once

#include "core/site/site_record.h"
#include "ui/editor/omission.h"

#include <QString>
#include <QWidget>

#include <array>
#include <memory>
#include <optional>

class QLineEdit;
class QPushButton;

namespace Ui
{
class pageFile;
}

namespace corvrec
{

class frmFileAvanzate;

// The third page of the site editor: the files that the recorder writes.
class pageFile : public QWidget
{
    Q_OBJECT

public:
    explicit pageFile(QWidget* parent = nullptr);
    ~pageFile() override;

    // ownDirectory: where a file is looked for first. To be called once; the dialog must outlive the page's
    // last use.
    void Load(const QString& ownDirectory, frmFileAvanzate& alerts);

    // A value that the record lacks stays as it is.
    void ShowRecord(const SiteRecord& site);
    void FillRecord(SiteRecord& site) const;

    // Selects the whole text of each field.
    void SelectNames();

    // The first check that fails.
    std::optional<Omission> Missing() const;

private:
    // A field, its value, and the message when it is empty.
    struct NameField {
        std::optional<std::string> SiteRecord::*value;
        QLineEdit* field;
        TextId missing;
    };

    void AddBrowseButton(QPushButton& button, QLineEdit& field, TextId name);
    void cmdFileAvanzate_Click();

    std::unique_ptr<Ui::pageFile> ui_;
    std::array<NameField, 4> names_{};
    QString ownDirectory_;
    frmFileAvanzate* alerts_ = nullptr;
};

} // namespace corvrec
