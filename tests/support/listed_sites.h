#pragma once

#include <QStringList>

namespace corvrec
{

class frmSiti;
class ProfileFile;
class ReferenceProfile;

// Codes and names that the list shows, those that it reads from a file, and those that it has to read from
// it.
QStringList ListedSites(const frmSiti& list);
QStringList ListedSites(ProfileFile& file);
QStringList ListedSites(const ReferenceProfile& file);

} // namespace corvrec
