#pragma once

#include "app/frmSiti.h"
#include "core/file/code_page.h"
#include "core/site/site_list.h"
#include "tests/support/reference_profile.h"

#include <QStringList>

// Codes and names of the sites: as the list shows them, as ListSites reads them, and as they are expected.
namespace corvrec
{

inline QString ListedEntry(const std::string& code, const std::string& name)
{
    return QString::fromStdString(code + " = " + name);
}

inline QStringList ListedSites(const frmSiti& list)
{
    QStringList listed;
    for (const SiteRow& row : list.Sites())
        listed.append(ListedEntry(row.code, row.name));
    return listed;
}

inline QStringList ListedSites(ProfileFile& file)
{
    QStringList listed;
    for (const SiteRow& site : ListSites(file))
        listed.append(ListedEntry(site.code, site.name));
    return listed;
}

inline QStringList ListedSites(const ReferenceProfile& file)
{
    QStringList listed;
    constexpr std::size_t size = 500; // the program's buffer for each read
    const std::string codes = file.Keys("Siti", size).value_or("");
    std::size_t begin = 0;
    for (std::size_t end = codes.find('\0'); end != std::string::npos; end = codes.find('\0', begin)) {
        const std::string code = codes.substr(begin, end - begin); // a code without its NUL is cut: no site
        const std::string name = file.Read("Siti", code, size).value_or("-CaVacca-");
        listed.append(ListedEntry(Utf8FromCp1252(code), name == "-CaVacca-" ? "0" : Utf8FromCp1252(name)));
        begin = end + 1;
    }
    return listed;
}

} // namespace corvrec
