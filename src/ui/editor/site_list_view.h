#pragma once

#include "core/site/site_list.h"

#include <span>
#include <string>

namespace corvrec
{

// What the editor needs from the site list, in UTF-8.
class SiteListView
{
public:
    virtual ~SiteListView() = default;

    // Code and name in the list's current row; empty when there is none.
    virtual std::string SelectedSite() const = 0;
    virtual std::string SelectedName() const = 0;

    // Valid until the list changes.
    virtual std::span<const SiteRow> Sites() const = 0;

    // Number of the serial port for the editor's own device windows: the last character of "Com" as a digit,
    // so only ports of one digit can be used; 0 when it is not a digit.
    virtual int ComPort() const = 0;
};

} // namespace corvrec
