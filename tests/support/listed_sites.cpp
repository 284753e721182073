#include "tests/support/listed_sites.h"

#include "app/frmSiti.h"
#include "core/file/code_page.h"
#include "core/site/site_list.h"
#include "tests/support/reference_profile.h"

namespace corvrec
{

namespace
{

constexpr std::size_t kListSize = 500; // the program's buffer for each read

QString Entry(const std::string& code, const std::string& name)
{
    return QString::fromStdString(code + " = " + name);
}

} // namespace

QStringList ListedSites(const frmSiti& list)
{
    QStringList listed;
    for (const SiteRow& row : list.Sites())
        listed.append(Entry(row.code, row.name));
    return listed;
}

QStringList ListedSites(ProfileFile& file)
{
    QStringList listed;
    for (const SiteRow& site : ListSites(file))
        listed.append(Entry(site.code, site.name));
    return listed;
}

QStringList ListedSites(const ReferenceProfile& file)
{
    QStringList listed;
    const std::string codes = file.Keys("Siti", kListSize).value_or("");
    std::size_t begin = 0;
    for (std::size_t end = codes.find('\0'); end != std::string::npos; end = codes.find('\0', begin)) {
        const std::string code = codes.substr(begin, end - begin); // a code without its NUL is cut: no site
        const std::string name = file.Read("Siti", code, kListSize).value_or("-CaVacca-");
        listed.append(Entry(Utf8FromCp1252(code), name == "-CaVacca-" ? "0" : Utf8FromCp1252(name)));
        begin = end + 1;
    }
    return listed;
}

} // namespace corvrec
