#pragma once

#include <QString>

#include <array>

class QLineEdit;
class QWidget;

namespace corvrec
{

// How a text gets into a field.
enum class Entry { paste, drop, inputMethod, keys };

inline constexpr std::array kEntries{Entry::paste, Entry::drop, Entry::inputMethod, Entry::keys};

// Pastes with Shift+Insert, which every field takes.
void Paste(QWidget& field, const QString& text);

// Drops the text from another program into the field's middle.
void Drop(QWidget& field, const QString& text);

// As an input method hands over a finished text.
void Commit(QWidget& field, const QString& text);

// What of a text the keyboard has keys for: no control characters, no halves of characters.
QString Typeable(const QString& text);

// Puts the text into the field in the place of what it holds.
void Enter(QLineEdit& field, const QString& text, Entry way);

} // namespace corvrec
