#pragma once

#include <QStringList>

namespace corvrec
{

class frmSiti;
class ProfileFile;
class ReferenceProfile;

// Codes and names of the sites: as the list shows them, as ListSites reads them, and as they are expected.
QStringList ListedSites(const frmSiti& list);
QStringList ListedSites(ProfileFile& file);
QStringList ListedSites(const ReferenceProfile& file);

} // namespace corvrec
