// The time from starting a program to its first painted window, and its peak memory until then, on the X
// server of DISPLAY. The program is killed afterwards.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace
{

struct Free {
    void operator()(void* block) const { std::free(block); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

// The top-level windows of a screen without a window manager, observed as they are mapped and painted.
class Screen
{
public:
    Screen()
        : connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_) != 0)
            throw std::runtime_error("no X server");
        const xcb_query_extension_reply_t* const damage = xcb_get_extension_data(connection_, &xcb_damage_id);
        if (damage == nullptr || damage->present == 0)
            throw std::runtime_error("an X server without the damage extension");
        damageEvent_ = static_cast<std::uint8_t>(damage->first_event + XCB_DAMAGE_NOTIFY);
        const Owned<xcb_damage_query_version_reply_t> version(xcb_damage_query_version_reply(
            connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));

        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(connection_);
    }
    ~Screen() { xcb_disconnect(connection_); }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Waits until nearly all of a window's area has been painted.
    void AwaitPaintedWindow()
    {
        for (;;) {
            const Owned<xcb_generic_event_t> event(xcb_wait_for_event(connection_));
            if (!event)
                throw std::runtime_error("the X server closed the connection");
            const auto type = static_cast<std::uint8_t>(event->response_type & 0x7F);
            if (type == XCB_CREATE_NOTIFY)
                Watch(reinterpret_cast<const xcb_create_notify_event_t&>(*event));
            else if (type == damageEvent_ &&
                     IsPainted(reinterpret_cast<const xcb_damage_notify_event_t&>(*event)))
                return;
        }
    }

private:
    void Watch(const xcb_create_notify_event_t& created)
    {
        const xcb_damage_damage_t damage = xcb_generate_id(connection_);
        xcb_damage_create(connection_, damage, created.window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(connection_);
    }

    bool IsPainted(const xcb_damage_notify_event_t& damage)
    {
        constexpr long kLeastSide = 100; // smaller ones are helper windows
        const long all = static_cast<long>(damage.geometry.width) * damage.geometry.height;
        long& painted = painted_[damage.drawable];
        painted += static_cast<long>(damage.area.width) * damage.area.height;
        return damage.geometry.width >= kLeastSide && damage.geometry.height >= kLeastSide &&
               painted * 10 >= all * 9;
    }

    xcb_connection_t* connection_;
    std::uint8_t damageEvent_ = 0;
    std::map<xcb_drawable_t, long> painted_;
};

int Run(char* const* command)
{
    Screen screen;
    const auto start = std::chrono::steady_clock::now();
    pid_t program = 0;
    if (posix_spawnp(&program, command[0], nullptr, nullptr, command, environ) != 0)
        throw std::runtime_error("the program does not start");
    screen.AwaitPaintedWindow();
    const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;

    kill(program, SIGKILL);
    int status = 0;
    rusage used{};
    wait4(program, &status, 0, &used);
    std::printf("%.1f ms %.1f MB\n", passed.count(), static_cast<double>(used.ru_maxrss) / 1024);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "Usage: bench_first_paint PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    try {
        return Run(argv + 1);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
