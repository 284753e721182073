#pragma once

#include "core/text_ids.h"

class QWidget;

namespace corvrec
{

// What a check on OK found missing or wrong: its message, and what happens around it.
struct Omission {
    TextId message;
    TextId title = text::setup;
    QWidget* pageBefore = nullptr; // page to bring to the front before the message; null: none
    QWidget* field = nullptr;      // field to focus after the message, on whatever page; null: none
};

} // namespace corvrec
