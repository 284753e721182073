#pragma once

#include <QStringList>

namespace corvrec
{

class frmSiti;
class ReferenceProfile;

// Codes and names that the list shows, and those that it has to show after its next start.
QStringList ListedSites(const frmSiti& list);
QStringList ListedSites(const ReferenceProfile& file);

} // namespace corvrec
