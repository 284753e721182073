#pragma once

#include <deque>
#include <string>
#include <string_view>

namespace corvrec
{

// The characters that a port has received and nobody has read yet, without NULs. The port limits their
// number.
class ReceiveBuffer
{
public:
    // The most characters that Take returns; 0, the initial value, means all.
    [[nodiscard]] int InputLen() const noexcept { return inputLen_; }
    void SetInputLen(int characters) noexcept { inputLen_ = characters; }

    [[nodiscard]] bool IsEmpty() const noexcept { return characters_.empty(); }
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(characters_.size()); }

    // Drops NULs.
    void Append(std::string_view bytes);

    // Removes up to InputLen characters; empty when there are none.
    std::string Take();

    void Clear() noexcept { characters_.clear(); }

private:
    std::deque<char> characters_;
    int inputLen_ = 0;
};

} // namespace corvrec
