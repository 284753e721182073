#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// A file descriptor with one owner.
class Descriptor
{
public:
    // Takes the result of a call that makes a descriptor. Throws std::system_error, with the name of what was
    // to be had, when the call has failed.
    Descriptor(int descriptor, const char* what);
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int Get() const { return descriptor_; }

private:
    int descriptor_;
};

// A pseudo-terminal: the editor opens it as a serial port by its name, and here is the far end. It is raw
// from the start. Destroying it is pulling the cable. Nothing waits; failures throw std::system_error.
class Pty
{
public:
    Pty();

    // Of the device that the editor opens.
    [[nodiscard]] const std::string& Name() const { return name_; }

    // Readable when something has come or the editor has opened or closed the device; writable when something
    // can be sent.
    [[nodiscard]] int Line() const { return master_.Get(); }
    [[nodiscard]] int Watch() const { return watch_.Get(); }

    // What has come.
    std::string Read();

    // The count of bytes that were taken, from the first on; none when the editor does not fetch them.
    std::size_t Write(std::string_view bytes);

    // Whether something was sent that the editor has not fetched.
    [[nodiscard]] bool HasUnread() const;

    struct Visits {
        int opened = 0;
        int closed = 0;
    };

    // How often the device was opened and closed since the last call. What was sent before a close and not
    // fetched is thrown away, and so is a right of exclusive use that an editor could not hand back.
    Visits TakeVisits();

private:
    Descriptor master_;
    std::string name_;
    // Without it the system would report a hang-up at this end whenever the editor closes its port.
    Descriptor slave_;
    Descriptor watch_;
};

} // namespace corvrec::lab
