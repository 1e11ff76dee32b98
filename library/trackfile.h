#pragma once
// The Trackfile: a plain sequence of records, record i being the slot of ID i.
// A record is "TRCK" and the last six digits of ID + 1000000, a 4-byte
// big-endian length L (text bytes + 1), the text and a NUL. A free slot has
// L = 1. The text is the 13 fields of a track joined by "|", in UTF-8.
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <map>

#include "library/library_state.h"

namespace sonorit {

QByteArray Track_Tag(int id);  // "TRCK000037"
// One whole record; empty when the text is too long for the length field.
QByteArray Encode_Track_Record(int id, const QString& text);
QString Join_Track_Record(const TrackRow& row);

// The record writers. Each makes up to five attempts of its own and leaves the
// Trackfile exactly as it was when it returns false.
bool Replace_Track_Record(LibraryContext& c, int id, const QString& text);
bool Append_Track_Record(LibraryContext& c, int id, const QString& text);
bool Blank_Track_Record(LibraryContext& c, int id);
bool Truncate_At_Track_Record(LibraryContext& c, int id);

// While a session is active (see LibraryState::RecordSession), writes the
// image with the session's journal applied to the Trackfile and removes the
// journal; false leaves both as they were.
bool Flush_Track_Journal(LibraryContext& c);
// Flushes and ends the session.
void End_Track_Session(LibraryContext& c);

// The byte offset of a slot found by hopping from record to record, -1 if the
// file ends first. `recordEnd` receives the offset behind the slot's record.
qint64 Find_Track_Slot(const QByteArray& file, int id, qint64* recordEnd);

}  // namespace sonorit
