#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvrec::lab
{

// Owns a file descriptor and closes it at the end.
class Descriptor
{
public:
    // Takes the result of a call that makes a descriptor. If the call has failed, throws std::system_error
    // with `what`, the name of the thing opened.
    Descriptor(int descriptor, const char* what);
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();

    [[nodiscard]] int Get() const { return descriptor_; }

private:
    int descriptor_;
};

// A pseudo-terminal. The editor opens it by name as a serial port; this is the far end. It is in raw mode
// from the start. Destroying it is like pulling the cable. No call blocks; failures throw std::system_error.
class Pty
{
public:
    Pty();

    // The path of the device that the editor opens.
    [[nodiscard]] const std::string& Name() const { return name_; }

    // For poll. Line is readable when bytes have arrived, and writable when bytes can be sent. Watch is
    // readable when the editor has opened or closed the device.
    [[nodiscard]] int Line() const { return master_.Get(); }
    [[nodiscard]] int Watch() const { return watch_.Get(); }

    // The bytes that have arrived; empty when there are none.
    std::string Read();

    // Sends as many bytes as fit, from the first on, and returns their number; 0 when the editor does not
    // fetch them.
    std::size_t Write(std::string_view bytes);

    // Whether the editor has still to fetch something that was sent.
    [[nodiscard]] bool HasUnread() const;

    struct Visits {
        int opened = 0;
        int closed = 0;
    };

    // How often the device was opened and closed since the last call. After a close, also discards what was
    // sent and not fetched, and ends exclusive use (TIOCEXCL) that the editor did not end.
    Visits TakeVisits();

private:
    Descriptor master_;
    std::string name_;
    // Kept open: otherwise the system would report a hang-up at this end whenever the editor closes its port.
    Descriptor slave_;
    Descriptor watch_;
};

} // namespace corvrec::lab
