#pragma once

#include "core/clock.h"
#include "core/text_ids.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace corvrec
{

// Shown as the moment that many days ago. Deliberate: the devices send hours, but editors have always taken
// them for days.
struct DaysAgo {
    double days = 0;

    bool operator==(const DaysAgo&) const = default;
};

// Shown with at most two decimals, the decimal comma always written: "12,5", "100,".
struct Percent {
    double value = 0;

    bool operator==(const Percent&) const = default;
};

// Shown as "dd/mm/yy", each part as received.
struct ReceivedDate {
    std::string_view day;
    std::string_view month;
    std::string_view year;

    bool operator==(const ReceivedDate&) const = default;
};
// Shown as "hh:mm", each part as received.
struct ReceivedTime {
    std::string_view hour;
    std::string_view minute;

    bool operator==(const ReceivedTime&) const = default;
};

// Shown as the byte's decimal number, 0 to 255.
struct ByteValue {
    int value = 0;

    bool operator==(const ByteValue&) const = default;
};

// What a value label shows. A string_view is text in code page 1252; it points into the reply or to a
// constant.
using Field = std::variant<std::string_view, TextId, DaysAgo, Percent, ReceivedDate, ReceivedTime, ByteValue>;

// A decoded reply: one field for each value label of the buffer window, named after the label. A field that
// the model does not send is text::notAvailable.
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

// Decode the reply of a model 1.1, of a 2.0 or 3.0, and of a Stratobox Buffer. Nothing is an error: missing
// positions give short or empty texts, and numbers of 0. The bytes must outlive the status.
BufferStatus Sx11Status(std::string_view bytes);
BufferStatus Sx30Status(std::string_view bytes);
BufferStatus Sx40Status(std::string_view bytes);

// By model number (namespace model); nullopt for any other number.
std::optional<BufferStatus> StatusOf(int modelNumber, std::string_view bytes);

// The moment `days` before now: "dd/MM/yyyy HH:mm:ss", or just "dd/MM/yyyy" at exactly midnight. Days may be
// negative or have a fraction. Empty outside the years 100 to 9999; a device's reply can lead there.
std::string NowMinusDays(const DateTime& now, double days);

// The field as its label shows it, in UTF-8. `text` looks up the string table.
std::string ShownText(const Field& field, const DateTime& now, std::string (*text)(TextId));

} // namespace corvrec
