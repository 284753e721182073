#pragma once

#include <QString>

#include <array>

class QLineEdit;
class QWidget;

namespace corvrec
{

// The ways to enter text into a field.
enum class Entry { paste, drop, inputMethod, keys };

inline constexpr std::array kEntries{Entry::paste, Entry::drop, Entry::inputMethod, Entry::keys};

// Pastes with Shift+Insert, which every field supports.
void Paste(QWidget& field, const QString& text);

// Drops the text, from another program, into the middle of the field.
void Drop(QWidget& field, const QString& text);

// Enters the text the way an input method commits it.
void Commit(QWidget& field, const QString& text);

// The part of the text that a keyboard can type: no control characters, no surrogates.
QString Typeable(const QString& text);

// Replaces the field's text by this one.
void Enter(QLineEdit& field, const QString& text, Entry way);

} // namespace corvrec
