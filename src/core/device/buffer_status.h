#pragma once

#include "core/clock.h"
#include "core/site/code_tables.h"
#include "core/text_ids.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corvrec
{

// The values that the buffer window shows, in the order of its labels.
enum class StatusField {
    memory,
    usedMemory,
    percentUsed,
    repetitions,
    sinceDownload,
    sinceData,
    faults,
    version,
    firmware,
    date,
    time,
    selector,
    printer,
    modem,
};
inline constexpr std::size_t kStatusFields = static_cast<std::size_t>(StatusField::modem) + 1;

// What decoding needs besides the reply. `text` looks up the string table.
struct StatusContext {
    DateTime now;
    std::string (*text)(TextId);
};

// Where a reply has a field, and how its bytes become the text of the label. Positions count from 1, as in
// the device's manual. The bytes are fewer than the width when the reply ends early.
struct FieldPlace {
    StatusField field;
    std::size_t position;
    std::size_t width;
    std::string (*shown)(std::string_view bytes, const StatusContext& context);
};

// A model's reply. A field that is not listed is text::notAvailable.
struct ReplyLayout {
    std::span<const FieldPlace> fields;
    // A reply of raw bytes has no end mark: number of its bytes before and after the line clear. Otherwise 0.
    int counted = 0;
    int countedAfterLineClear = 0;
};
const ReplyLayout& LayoutOf(BufferModel model);

// A decoded reply: the text of each StatusField, in UTF-8.
using BufferStatus = std::array<std::string, kStatusFields>;

// Decode the reply of a model 1.1, of a 2.0 or 3.0, and of a Stratobox Buffer; StatusOf chooses by the model.
// Nothing is an error: missing positions give short or empty texts, and numbers of 0.
BufferStatus Sx11Status(std::string_view reply, const StatusContext& context);
BufferStatus Sx30Status(std::string_view reply, const StatusContext& context);
BufferStatus Sx40Status(std::string_view reply, const StatusContext& context);
BufferStatus StatusOf(BufferModel model, std::string_view reply, const StatusContext& context);

// The moment `days` before now: "dd/MM/yyyy HH:mm:ss", or just "dd/MM/yyyy" at exactly midnight. Days may be
// negative or have a fraction. Empty outside the years 100 to 9999; a device's reply can lead there.
std::string NowMinusDays(const DateTime& now, double days);

} // namespace corvrec
