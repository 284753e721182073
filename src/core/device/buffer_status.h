#pragma once

#include "core/clock.h"
#include "core/text_ids.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace corvrec
{

// Shown as the moment so many days ago. The devices send hours; that they are taken for days is kept.
struct DaysAgo {
    double days = 0;

    bool operator==(const DaysAgo&) const = default;
};

// Shown with at most two decimals and the decimal comma always written: "12,5", "100,".
struct Percent {
    double value = 0;

    bool operator==(const Percent&) const = default;
};

// Shown as "dd/mm/yy" and "hh:mm", each part as received.
struct ReceivedDate {
    std::string_view day;
    std::string_view month;
    std::string_view year;

    bool operator==(const ReceivedDate&) const = default;
};
struct ReceivedTime {
    std::string_view hour;
    std::string_view minute;

    bool operator==(const ReceivedTime&) const = default;
};

// Shown as the decimal number of the byte, from 0 to 255.
struct ByteValue {
    int value = 0;

    bool operator==(const ByteValue&) const = default;
};

// What a value label shows. A view is the text as received, in code page 1252, and lies in the reply.
using Field = std::variant<std::string_view, TextId, DaysAgo, Percent, ReceivedDate, ReceivedTime, ByteValue>;

// A decoded reply, one field per value label of the buffer window, named as the label.
struct BufferStatus {
    Field memoria;
    Field condizione;
    Field riempimento;
    Field ripetizioni;
    Field ultimoscarico;
    Field ultimiDati;
    Field guasto;
    Field modello;
    Field firmware;
    Field data;
    Field ora;
    Field selezione;
    Field stampante;
    Field modem;

    bool operator==(const BufferStatus&) const = default;
};

// Decode the reply of a model 1.1, of a 2.0 or 3.0, of a Stratobox Buffer. Nothing is an error: missing
// positions give short or empty texts and numbers of 0. The bytes must outlive the status.
BufferStatus Sx11Status(std::string_view bytes);
BufferStatus Sx30Status(std::string_view bytes);
BufferStatus Sx40Status(std::string_view bytes);

// By the model's number (see model::…); nothing for any other.
std::optional<BufferStatus> StatusOf(int modelNumber, std::string_view bytes);

// "dd/MM/yyyy HH:mm:ss", or "dd/MM/yyyy" at exactly midnight. Days may be negative or have a fraction. Empty
// outside the years 100 to 9999, which a device can ask for.
std::string NowMinusDays(const DateTime& now, double days);

// The field in UTF-8 as its label shows it. `text` looks up the string table.
std::string ShownText(const Field& field, const DateTime& now, std::string (*text)(TextId));

} // namespace corvrec
